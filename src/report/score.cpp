#include "report/score.h"

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

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

std::string Format(const char* format, double value) {
  char text[48];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// What is not proved is marked with what nobody can exceed.
std::string Row(const TaskText& text, const TaskResult& task, bool proved) {
  const std::string most =
      proved ? "" : "  not proved, at most " + Format("%.2f", task.bound_m / 1000);
  char line[120];
  if (task.vertices == 0) {
    std::snprintf(line, sizeof line, "%-20s %10s", text.name, "-");
    return line + most + "\n";
  }
  const std::string closing = text.closed ? Format("%.0f m", task.closing_m) : "";
  std::snprintf(line, sizeof line, "%-20s %10.2f %10s", text.name, task.distance_m / 1000,
                closing.c_str());
  std::string row = line;
  if (text.points_per_km > 0) row += Format(" %10.2f", text.points_per_km * task.score_m / 1000);
  row.erase(row.find_last_not_of(' ') + 1);
  return row + most + "\n";
}

std::string Vertex(const TrackPoint& point) {
  const uint32_t second_of_day = point.time % 86400;
  char text[80];
  std::snprintf(text, sizeof text, "  %02u:%02u:%02u  %10.5f %11.5f\n", second_of_day / 3600,
                second_of_day / 60 % 60, second_of_day % 60, SemicirclesToDegrees(point.lat),
                SemicirclesToDegrees(point.lon));
  return text;
}

// Metres with three decimals, as numbers that print without noise.
double Millimetres(double metres) {
  return std::round(metres * 1000) / 1000 + 0.0;  // never -0
}

nlohmann::ordered_json TaskJson(const TaskText& text, const TaskResult& task) {
  nlohmann::ordered_json json;
  nlohmann::ordered_json indices = nlohmann::ordered_json::array();
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

const char* Kind(const OptimiseResult& result) {
  if (!result.exact) return "on the track reduced to 2000 points, refined on the whole of it";
  return result.stopped ? "exact search on every fix, stopped: the best so far"
                        : "exact search on every fix, proved to 1 m";
}

}  // namespace

std::string ScoreText(const FlightScore& score, std::span<const TrackPoint> points) {
  char line[120];
  std::snprintf(line, sizeof line, "Gap %d m, FAI rule %s, times in UTC\n", score.settings.gap_m,
                score.settings.fai_rule ? "on" : "off");
  std::string text = score.file + "\nDistances " + Kind(score.result) + "\n" + line;
  std::snprintf(line, sizeof line, "%-20s %10s %10s %10s\n", "Task", "km", "closing", "points");
  text += line;
  for (size_t i = 0; i < kOptimiseTasks; ++i) {
    const TaskResult& task = score.result.tasks[i];
    const bool searched = score.result.stopped && (!kTasks[i].closed || score.settings.gap_m > 0);
    text += Row(kTasks[i], task, !searched || task.optimal);
  }
  for (size_t i = 0; i < kOptimiseTasks; ++i) {
    const TaskResult& task = score.result.tasks[i];
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
  return flights.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

}  // namespace skyhaul
