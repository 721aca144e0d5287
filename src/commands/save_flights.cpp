#include "commands/save_flights.h"

#include <algorithm>
#include <utility>

#include "commands/now.h"
#include "commands/target.h"
#include "files/file_io.h"
#include "files/igc_files.h"
#include "platform/file.h"
#include "platform/path.h"

namespace skyhaul {

namespace {

constexpr const char* kTitle = "Save IGC log";

// What saving the flights of one download works with.
struct Saving {
  const Session* session = nullptr;
  const DownloadFlightsRequest* request = nullptr;
  const InstrumentIdentity* identity = nullptr;
  Operation operation;
};

bool IsIgc(const FlightTarget& target) {
  if (target.kind == FlightTarget::Kind::kIgcFolder) return true;
  // What is wrong with the path has been reported by CheckFlightTarget() before the download.
  std::string ignored;
  const FileFormat* format = FormatToWrite(target.path, target.keyword, FileKind::kTrack, ignored);
  // An IGC file goes the way that keeps the instrument's own text, however it was asked for.
  return format != nullptr && format->keyword == "igc";
}

// What the person says counts most; an instrument only knows its owner.
igc::HeaderTexts Header(const Saving& saving) {
  igc::HeaderTexts header = saving.session->defaults->igc_header;
  if (!saving.identity->pilot_name.empty()) header.pilot = saving.identity->pilot_name;
  if (!saving.request->pilot.empty()) header.pilot = saving.request->pilot;
  return header;
}

// No file with a part of a flight has the name of a file with a whole one.
std::string IncompleteText(const Flight& flight) {
  return flight.missing.empty() ? "" : "-incomplete";
}

// The path of the n-th flight of a target that names a file.
std::string FilePath(const FlightTarget& target, const Flight& flight, size_t number) {
  const std::string plain = WithNameEnd(NumberedPath(target.path, number), IncompleteText(flight));
  std::string path = plain;
  // One tries again with a flight that did not arrive whole, and what came before is kept.
  for (size_t again = 2; !flight.missing.empty() && !target.overwrite && FileExists(path);
       ++again) {
    path = NumberedPath(plain, again);
  }
  return path;
}

IgcSave MakeIgcSave(const Saving& saving, const Flight& flight, size_t number,
                    const std::vector<std::string>& written) {
  const FlightTarget& target = saving.request->target;
  IgcSave save;
  const bool folder = target.kind == FlightTarget::Kind::kIgcFolder;
  save.path = folder ? AsFolder(target.path) : FilePath(target, flight, number);
  if (folder) save.name_end = IncompleteText(flight);
  save.is_template = folder;
  save.overwrite = target.overwrite;
  save.header = Header(saving);
  // A part of a flight is not what the instrument recorded: it gets no signature.
  save.options = {.sign = true,
                  .may_be_signed = !IsGiven(target.filter) && flight.missing.empty(),
                  // A download has no serial number in the three characters of an A record; "000"
                  // stands for that.
                  .serial = "000",
                  .free_text = saving.identity->description,
                  .download_time = Now(saving.session->platform->clock),
                  .enl = saving.session->defaults->igc_enl};
  // Two flights of one day must not overwrite each other, even when files that were there may be.
  save.not_over = written;
  return save;
}

// Returns a negative number after a message, else path is the file.
int SaveAsTrackFile(const Saving& saving, const Flight& flight, size_t number, std::string& path) {
  const FlightTarget& target = saving.request->target;
  const igc::HeaderTexts header = Header(saving);
  FileContents contents;
  contents.kind = FileKind::kTrack;
  // A copy: the flight is still to become the document's.
  contents.points = flight.points;
  contents.header.pilot = header.pilot;
  contents.header.glider_type = header.glider_type;
  contents.header.glider_id = header.glider_id;
  contents.header.site = header.site;
  contents.header.competition_class = header.competition_class;
  contents.header.competition_id = header.competition_id;
  const std::string file = FilePath(target, flight, number);
  const int saved = SaveFile(saving.operation, file, target.keyword, contents, target.overwrite);
  if (saved >= 0) path = file;
  return saved;
}

// Returns 0 with the part of the flight that is to be written, or kNothingToSave after a message
// when nothing is left of it.
int CutOut(const Saving& saving, const Flight& flight, Flight& part) {
  part.points = FilterPoints(flight.points, saving.request->target.filter);
  part.missing = flight.missing;
  if (!part.points.empty()) return 0;
  ShowMessage(saving.operation,
              "The flight has no positions between the times of FILTER and FILTEREND (UTC)",
              kTitle);
  return kNothingToSave;
}

// Returns a negative number after a message, else path is the file; kNothingToSave when no other
// place would help.
int SaveOne(const Saving& saving, const Flight& flight, size_t number,
            const std::vector<std::string>& written, std::string& path) {
  const bool igc = IsIgc(saving.request->target);
  const Flight* saved = &flight;
  Flight part;
  if (IsGiven(saving.request->target.filter)) {
    // The instrument has signed its text as a whole; a part of it would fail every check.
    if (igc && flight.instrument_igc.expected) {
      ShowStatus(saving.operation,
                 "FILTER and FILTEREND have no effect: the instrument's own record is saved whole");
    } else {
      const int cut = CutOut(saving, flight, part);
      if (cut != 0) return cut;
      saved = &part;
    }
  }
  if (!igc) return SaveAsTrackFile(saving, *saved, number, path);
  return SaveIgcAuto(saving.operation, *saved, MakeIgcSave(saving, flight, number, written), path);
}

// Saves the whole flight where there is room for it, after a message that it cannot be saved where
// it was to go. As IGC whatever was asked for, because that is the instrument's own text or has all
// that it sent. Then path is the file; a message says which.
void Rescue(const Saving& saving, const Flight& flight, const std::vector<std::string>& written,
            std::string& path) {
  IgcSave save = MakeIgcSave(saving, flight, 1, written);
  save.name_end = IncompleteText(flight);
  save.is_template = false;
  save.overwrite = false;
  save.options.may_be_signed = flight.missing.empty();
  std::string tried;
  for (const std::string& folder : saving.session->defaults->rescue_folders) {
    save.path = AsFolder(folder);
    // Without texts: only the place that takes it is worth one.
    if (SaveIgcAuto(Operation{}, flight, save, path) >= 0) {
      return ShowMessage(saving.operation, "The flight has been saved as " + path + " instead",
                         kTitle);
    }
    tried.append("\n").append(folder);
  }
  ShowMessage(saving.operation, "The flight cannot be saved in these folders either:" + tried,
              kTitle);
}

}  // namespace

int CheckFlightTarget(const Operation& operation, const FlightTarget& target, size_t flights) {
  if (target.kind == FlightTarget::Kind::kFile) {
    for (size_t number = 1; number <= flights; ++number) {
      const std::string path = NumberedPath(target.path, number);
      if (CheckTarget(operation, path, target.keyword, FileKind::kTrack, target.overwrite) != 0) {
        return -1;
      }
    }
    return 0;
  }
  if (CheckIgcFolderLength(operation, AsFolder(target.path)) != 0) return -1;
  // "flights/$date" becomes a folder only when the first flight is known; "flights" has to be
  // there.
  const std::string plain = PlainPart(AsFolder(target.path));
  if (plain == AsFolder(target.path)) return CheckFolder(operation, target.path, kTitle);
  // Whether it can be written to is left open: the folder of the day may be there already.
  if (IsDirectory(plain)) return 0;
  ShowMessage(operation, "There is no folder " + plain, kTitle);
  return -1;
}

int SaveFlights(const Session& session, const DownloadFlightsRequest& request,
                const InstrumentIdentity& identity, std::vector<Flight>& flights,
                std::vector<std::string>& written) {
  // Flights come in the order of the instrument or of the request, but "-2" and "-3" should follow
  // the day. A flight that arrived has at least one fix.
  std::ranges::sort(flights, {}, [](const Flight& flight) { return flight.points.front().time; });
  const Saving saving = {.session = &session,
                         .request = &request,
                         .identity = &identity,
                         .operation = {.shell = session.shell}};
  int result = 0;
  size_t number = 0;
  for (const Flight& flight : flights) {
    std::string path;
    // A number is used up even when its file fails, so that each file keeps its flight's place.
    const int saved = SaveOne(saving, flight, ++number, written, path);
    if (saved < 0) result = -1;
    if (saved < 0 && saved != kNothingToSave) Rescue(saving, flight, written, path);
    if (!path.empty()) written.push_back(std::move(path));
  }
  return result;
}

}  // namespace skyhaul
