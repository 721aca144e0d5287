#include "report/score.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "core/text/date_time.h"
#include "core/text/numbers.h"
#include "core/text/printable.h"
#include "core/time_scale.h"
#include "core/units.h"

namespace skyhaul {

namespace {

struct TaskText {
  const char* key;   // in JSON
  const char* name;  // for a person
  bool closed;
  double points_per_km;  // of the statistics; 0: none
};

constexpr TaskText kTasks[] = {
    {.key = "free2", .name = "Distance, 2 points", .closed = false, .points_per_km = 1.5},
    {.key = "free3", .name = "Distance, 3 points", .closed = false, .points_per_km = 1.5},
    {.key = "free4", .name = "Distance, 4 points", .closed = false, .points_per_km = 1.5},
    {.key = "free5", .name = "Distance, 5 points", .closed = false, .points_per_km = 1.5},
    {.key = "out_and_return", .name = "Out and return", .closed = true, .points_per_km = 0},
    {.key = "flat_triangle", .name = "Flat triangle", .closed = true, .points_per_km = 1.75},
    {.key = "fai_triangle", .name = "FAI triangle", .closed = true, .points_per_km = 2.0},
};
static_assert(std::size(kTasks) == kOptimiseTasks);

// A text at the right end of a column.
std::string Right(const std::string& text, size_t width) {
  return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
}

std::string Left(std::string text, size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text;
}

std::string Kilometres(double metres) {
  return FixedText(metres / 1000, 2);
}

constexpr size_t kTaskWidth = 20;
constexpr size_t kNumberWidth = 10;

// What is not proved is marked with what nobody can exceed.
std::string Row(const TaskText& text, const TaskResult& task, bool proved) {
  // "Out and return            85.20      312 m  not proved, at most 86.01"
  const std::string most = proved ? "" : "  not proved, at most " + Kilometres(task.bound_m);
  std::string row = Left(text.name, kTaskWidth) + ' ';
  // A task without a result may still have a bound: nothing was found in time, but something may be
  // there.
  if (task.vertices == 0) return row + Right("-", kNumberWidth) + most + '\n';
  row += Right(Kilometres(task.distance_m), kNumberWidth);
  if (text.closed) row += ' ' + Right(FixedText(task.closing_m, 0) + " m", kNumberWidth);
  if (text.points_per_km > 0) {
    // Without a closing distance its column stays empty.
    if (!text.closed) row += std::string(1 + kNumberWidth, ' ');
    row += ' ' + Right(FixedText(text.points_per_km * task.score_m / 1000, 2), kNumberWidth);
  }
  return row + most + '\n';
}

std::string Vertex(const TrackPoint& point) {
  // "  10:05:45    46.53517     8.12345", five decimals being about a metre.
  return "  " + DurationText(point.time % kSecondsPerDay) + "  " +
         Right(FixedText(SemicirclesToDegrees(point.lat), 5), 10) + ' ' +
         Right(FixedText(SemicirclesToDegrees(point.lon), 5), 11) + '\n';
}

// Metres with three decimals, as numbers that print without noise.
double Millimetres(double metres) {
  // Rounded as a number, because a JSON library prints the shortest text that gives the number
  // back.
  return std::round(metres * 1000) / 1000 + 0.0;  // never -0
}

nlohmann::ordered_json TaskJson(const TaskText& text, const TaskResult& task) {
  // Ordered, so that the keys of every task come as the documents list them.
  nlohmann::ordered_json json;
  nlohmann::ordered_json indices = nlohmann::ordered_json::array();
  // The array of indices has a fixed size; only the first ones belong to the task.
  for (uint32_t i = 0; i < task.vertices; ++i) indices.push_back(task.indices[i]);
  json["indices"] = indices;
  json["distance_m"] = Millimetres(task.distance_m);
  if (text.closed) {
    json["closing_m"] = Millimetres(task.closing_m);
    json["score_m"] = Millimetres(task.score_m);
  }
  json["optimal"] = task.optimal;
  json["bound_m"] = Millimetres(task.bound_m);
  return json;
}

std::string Kind(const FlightScore& score) {
  const OptimiseResult& result = score.result;
  if (result.exact) {
    return result.stopped ? "exact search on every fix, stopped: the best so far"
                          : "exact search on every fix, proved to 1 m";
  }
  const std::string points = std::to_string(result.searched_points);
  return result.searched_points < score.fixes
             ? "on the track reduced to " + points + " points, refined on the whole of it"
             : "on all " + points + " fixes";
}

}  // namespace

std::string ScoreText(const FlightScore& score, std::span<const TrackPoint> points) {
  std::string text = PrintableText(score.file) + "\nDistances " + Kind(score) + "\nGap " +
                     std::to_string(score.settings.gap_m) + " m, FAI rule " +
                     (score.settings.fai_rule ? "on" : "off") + ", times in UTC\n" +
                     Left("Task", kTaskWidth) + ' ' + Right("km", kNumberWidth) + ' ' +
                     Right("closing", kNumberWidth) + ' ' + Right("points", kNumberWidth) + '\n';
  for (size_t i = 0; i < kOptimiseTasks; ++i) {
    const TaskResult& task = score.result.tasks[i];
    // Only a stopped search leaves something open. With a gap of 0 closed tasks are not searched,
    // so that nothing is open about them.
    const bool searched = score.result.stopped && (!kTasks[i].closed || score.settings.gap_m > 0);
    text += Row(kTasks[i], task, !searched || task.optimal);
  }
  for (size_t i = 0; i < kOptimiseTasks; ++i) {
    const TaskResult& task = score.result.tasks[i];
    // A task that was not found has no vertices to list; its row above says "-".
    if (task.vertices == 0) continue;
    text += "\n";
    text += kTasks[i].name;
    text += "\n";
    for (uint32_t k = 0; k < task.vertices; ++k) text += Vertex(points[task.indices[k]]);
  }
  return text;
}

std::string ScoresJson(std::span<const FlightScore> scores) {
  nlohmann::ordered_json flights = nlohmann::ordered_json::array();
  for (const FlightScore& score : scores) {
    nlohmann::ordered_json tasks;
    for (size_t i = 0; i < kOptimiseTasks; ++i) {
      tasks[kTasks[i].key] = TaskJson(kTasks[i], score.result.tasks[i]);
    }
    flights.push_back({{"file", score.file},
                       {"fixes", score.fixes},
                       {"gap_m", score.settings.gap_m},
                       {"fai_rule", score.settings.fai_rule},
                       {"exact", score.result.exact},
                       {"elapsed_ms", score.result.elapsed_ms},
                       {"tasks", tasks}});
  }
  // Replaces bytes of a path that are not UTF-8, where dump() would throw.
  return flights.dump(2, ' ', true, nlohmann::json::error_handler_t::replace) + "\n";
}

}  // namespace skyhaul
