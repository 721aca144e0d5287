#include "core/owner_queue.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <vector>

namespace skyhaul {
namespace {

struct Owner {
  OwnerQueue queue;
  std::vector<int> order;  // the owner's alone: the thread sanitizer sees who else runs routines
  std::vector<std::thread::id> threads;
};

struct Step {
  Owner* owner = nullptr;
  int number = 0;
  Step* next = nullptr;  // what the routine posts itself
};

void RunStep(void* argument) {
  auto& step = *static_cast<Step*>(argument);
  step.owner->order.push_back(step.number);
  step.owner->threads.push_back(std::this_thread::get_id());
  if (step.next != nullptr) PostToOwner(step.owner->queue, RunStep, step.next);
}

TEST(OwnerQueue, RunsEachThreadsRoutinesInOrderOnTheOwner) {
  constexpr size_t kSteps = 200;
  Owner owner;
  std::vector<Step> steps(2 * kSteps);
  const auto post = [&](size_t from) {
    for (size_t i = from; i < from + kSteps; ++i) {
      steps[i] = {.owner = &owner, .number = static_cast<int>(i)};
      PostToOwner(owner.queue, RunStep, &steps[i]);
    }
  };
  std::array<std::thread, 2> posters = {std::thread(post, size_t{0}), std::thread(post, kSteps)};
  for (size_t i = 0; i < steps.size(); ++i) RunNextRoutine(owner.queue);
  for (std::thread& poster : posters) poster.join();

  std::array<size_t, 2> next = {0, kSteps};
  for (const int number : owner.order) {
    const auto n = static_cast<size_t>(number);
    EXPECT_EQ(n, next.at(n / kSteps)++);
  }
  for (const std::thread::id thread : owner.threads) EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST(OwnerQueue, ARoutineMayPost) {
  Owner owner;
  Step second = {.owner = &owner, .number = 2};
  Step first = {.owner = &owner, .number = 1, .next = &second};
  PostToOwner(owner.queue, RunStep, &first);
  for (int i = 0; i < 2; ++i) RunNextRoutine(owner.queue);
  EXPECT_EQ(owner.order, (std::vector{1, 2}));
}

// The last routine often tells the owner that it may go, and the queue with it.
TEST(OwnerQueue, MayEndWithItsLastRoutine) {
  for (int i = 0; i < 100; ++i) {
    std::thread poster;
    {
      Owner owner;
      Step step = {.owner = &owner, .number = static_cast<int>(i)};
      poster = std::thread([&] { PostToOwner(owner.queue, RunStep, &step); });
      RunNextRoutine(owner.queue);
    }
    poster.join();
  }
}

}  // namespace
}  // namespace skyhaul
