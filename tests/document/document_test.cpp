#include "document/document.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

using Indices = std::vector<uint32_t>;

Flight FlightOf(size_t points) {
  return {.points = std::vector<TrackPoint>(points)};
}

const Source kFile = {.origin = Source::Origin::kFile, .name = "a.igc"};

size_t Points(const Document& document) {
  return document.lists.flight == nullptr ? 0 : document.lists.flight->points.size();
}

TEST(Document, UndoAndRedoSwapWholeLists) {
  Document document;
  ReplaceFlight(document, FlightOf(3), kFile, false, "Opening");
  ReplaceWaypoints(document, {{.name = "A"}}, {}, true, "Edit");
  ReplaceAirspaces(document, {{.name = "R"}}, kFile, false, "Opening of airspace");
  ReplaceFlight(document, FlightOf(5), {.origin = Source::Origin::kInstrument}, true, "Download");
  SelectPoints(document, {1});
  const std::shared_ptr<const Flight> downloaded = document.lists.flight;
  const uint32_t generation = document.State(ListKind::kFlight).generation;

  EXPECT_EQ(UndoTitle(document), "Download");
  Undo(document);
  EXPECT_EQ(Points(document), 3U);
  EXPECT_EQ(document.State(ListKind::kFlight).source.name, "a.igc");
  EXPECT_FALSE(document.State(ListKind::kFlight).modified);
  EXPECT_NE(document.State(ListKind::kFlight).generation, generation);
  EXPECT_TRUE(document.selection.empty());
  EXPECT_EQ(document.lists.waypoints->size(), 1U) << "the other lists stay";

  EXPECT_EQ(RedoTitle(document), "Download");
  Redo(document);
  EXPECT_EQ(document.lists.flight, downloaded) << "moved, not copied";
  EXPECT_TRUE(document.State(ListKind::kFlight).modified);

  for (int i = 0; i < 5; ++i) Undo(document);
  EXPECT_EQ(document.lists.flight, nullptr);
  EXPECT_EQ(document.lists.waypoints, nullptr);
  EXPECT_EQ(document.lists.airspaces, nullptr);
  EXPECT_EQ(UndoTitle(document), "");
  Redo(document);
  ReplaceFlight(document, FlightOf(9), kFile, false, "Other");
  EXPECT_EQ(RedoTitle(document), "") << "a change leaves nothing to redo";
}

TEST(Document, SavingMakesWhatUndoBringsBackModified) {
  Document document;
  ReplaceWaypoints(document, {{.name = "A"}}, kFile, false, "Opening");
  ReplaceWaypoints(document, {{.name = "B"}}, kFile, true, "Edit");
  MarkSaved(document, ListKind::kWaypoints);
  EXPECT_FALSE(document.State(ListKind::kWaypoints).modified);
  Undo(document);
  EXPECT_TRUE(document.State(ListKind::kWaypoints).modified);
  Redo(document);
  EXPECT_FALSE(document.State(ListKind::kWaypoints).modified);
}

TEST(Document, HistoryIsBounded) {
  Document document;
  for (size_t i = 0; i <= kMostSteps; ++i) ReplaceFlight(document, FlightOf(i), {}, true, "x");
  EXPECT_EQ(document.history.undo.size(), kMostSteps);
  // Two flights of 40 MB are too much for the history, the last step is kept all the same.
  constexpr size_t kPoints = (size_t{40} << 20) / sizeof(TrackPoint);
  for (int i = 0; i < 3; ++i) ReplaceFlight(document, FlightOf(kPoints), {}, true, "large");
  EXPECT_EQ(document.history.undo.size(), 1U);
  Undo(document);
  EXPECT_EQ(Points(document), kPoints);
}

TEST(Document, ExportsTheSelectionUnlessItHasAHole) {
  const std::tuple<Indices, std::optional<Indices>> cases[] = {
      {Indices{}, Indices{10, 11, 12, 13}},
      {Indices{2}, Indices{12}},
      {Indices{2, 1, 1, 99}, Indices{11, 12}},
      {Indices{0, 1, 3}, std::nullopt},
  };
  Document document;
  ReplaceFlight(document, {.points = {{.time = 10}, {.time = 11}, {.time = 12}, {.time = 13}}}, {},
                true, "");
  for (const auto& [selection, expected] : cases) {
    SelectPoints(document, selection);
    const auto points = SelectedPoints(document.lists.flight->points, document.selection);
    ASSERT_EQ(points.has_value(), expected.has_value());
    if (!points.has_value()) continue;
    Indices times;
    for (const TrackPoint& point : *points) times.push_back(point.time);
    EXPECT_EQ(times, *expected);
  }
}

}  // namespace
}  // namespace skyhaul
