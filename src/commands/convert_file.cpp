#include "commands/convert_file.h"

#include "commands/now.h"
#include "files/file_io.h"

namespace skyhaul {

ConvertFileResult ConvertFile(const Session& session, const ConvertFileRequest& request) {
  const Operation operation = {.shell = session.shell};
  FileContents contents;
  if (LoadFile(operation, request.from, contents) < 0) return {};
  // The kind is known only once the file has been read, because its text is recognised too.
  if (request.only.value_or(contents.kind) != contents.kind) {
    ShowMessage(operation, request.from + " holds something else: " + KindText(contents.kind),
                "Reading file");
    return {};
  }
  // For formats that write when the file was made; writers themselves ask no clock.
  contents.taken_over = Now(session.platform->clock);
  const int written = SaveFile(operation, request.to, request.keyword, contents, request.overwrite);
  return {.done = written >= 0, .records = written < 0 ? 0 : static_cast<size_t>(written)};
}

}  // namespace skyhaul
