#include "commands/convert_file.h"

#include "commands/now.h"
#include "commands/read_options.h"
#include "commands/sound_airspaces.h"
#include "files/file_io.h"
#include "platform/file.h"

namespace skyhaul {

namespace {

constexpr const char* kWriteTitle = "Writing file";

}  // namespace

ConvertFileResult ConvertFile(const Session& session, const ConvertFileRequest& request) {
  const Operation operation = {.shell = session.shell};
  // Whatever else is asked for: the other format may hold less, and nothing would be left to go
  // back to.
  if (SameFile(request.from, request.to)) {
    ShowMessage(operation,
                request.to + " is the file that is to be converted: give the result another name",
                kWriteTitle);
    return {};
  }
  FileContents contents;
  igc::ReadOptions options = ReadOptionsOf(session, request.strict);
  // An IGC file that this program writes has no fixes marked V; a format that is none is told when
  // it is written.
  std::string ignored;
  const FileFormat* format = FormatToWrite(request.to, request.keyword, FileKind::kTrack, ignored);
  options.leave_out_marked = format != nullptr && format->keyword == "igc";
  if (LoadFile(operation, request.from, options, contents) < 0) return {};
  // The kind is known only once the file has been read, because its text is recognised too.
  if (CheckKind(operation, request.from, contents, request.only) != 0) return {};
  // Damaged airspaces are left out, and a file without any would look like one of a country that
  // has none.
  const size_t read = contents.airspaces.size();
  contents.airspaces = SoundAirspaces(operation, contents.airspaces, kWriteTitle);
  const size_t damaged = read - contents.airspaces.size();
  if (damaged > 0 && damaged == read) return {};
  // For formats that write when the file was made; writers themselves ask no clock.
  contents.taken_over = Now(session.platform->clock);
  const int written = SaveFile(operation, request.to, request.keyword, contents, request.overwrite);
  return {.done = written >= 0 && damaged == 0,
          .records = written < 0 ? 0 : static_cast<size_t>(written)};
}

}  // namespace skyhaul
