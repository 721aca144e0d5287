#include "instruments/conversation_commands.h"

#include <cstdio>
#include <string_view>

#include "instruments/anonymise.h"
#include "instruments/choices.h"
#include "instruments/host.h"
#include "instruments/replay.h"
#include "platform/file.h"

namespace skyhaul {

namespace {

constexpr std::string_view kReplay = "replay";
constexpr std::string_view kAnonymise = "anonymise";

constexpr std::string_view kUsage =
    "\n"
    "Conversations:\n"
    "  replay            play the instrument's part of FILE back behind a pseudo-terminal. FILE\n"
    "                    is what --log writes, or the program's own --trace. What the host sends\n"
    "                    otherwise than in FILE is told; a line of its that stands further on in\n"
    "                    FILE is answered, any other is not\n"
    "  --at-once         without the pauses of FILE\n"
    "  anonymise         write FILE to OUT without the names and numbers of pilot, glider and\n"
    "                    instrument: letters become X, digits 0. Lengths and the checksums of\n"
    "                    sentences stay right. A flight's security record (G) does not verify\n"
    "                    afterwards; where and when it was flown stays, and so do the remarks.\n"
    "                    Look through OUT: a name in a damaged line may not be recognised\n";

struct ReplayChoices {
  std::string file;
  bool at_once = false;
  std::string link_path;
  std::string log_path;
};

// Returns what is wrong with the arguments behind the command, empty when nothing is.
std::string ParseReplay(const std::vector<std::string>& arguments, ReplayChoices& choices) {
  for (size_t i = 1; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    const bool is_link = argument == "--link";
    if (argument == "--at-once") {
      choices.at_once = true;
    } else if (is_link || argument == "--log") {
      if (i + 1 == arguments.size()) return argument + " needs a path";
      (is_link ? choices.link_path : choices.log_path) = arguments[++i];
    } else if (argument.starts_with("-")) {
      return "Unknown option " + argument;
    } else if (!choices.file.empty()) {
      return "Only one conversation can be played: " + argument;
    } else {
      choices.file = argument;
    }
  }
  return choices.file.empty() ? "Which conversation? See --help" : "";
}

// Returns what is wrong, empty when nothing is.
std::string ReadText(const std::string& path, std::string& text) {
  const FileResult result = ReadWholeFile(path, text);
  return result.problem == FileProblem::kNone ? "" : path + ": " + result.reason;
}

void TellDifference(void* context, std::string_view text, uint64_t now_ns) {
  (void)std::fprintf(stderr, "skyhaul-instrument: %.*s\n", static_cast<int>(text.size()),
                     text.data());
  if (context != nullptr) LogRemark(*static_cast<ConversationLog*>(context), text, now_ns);
}

int RunReplay(const std::vector<std::string>& arguments) {
  ReplayChoices choices;
  std::string problem = ParseReplay(arguments, choices);
  if (!problem.empty()) return Refuse(problem);
  std::string text;
  problem = ReadText(choices.file, text);
  if (!problem.empty()) return Refuse(problem);
  std::vector<SpokenLine> lines;
  if (ReadConversation(text, lines, problem) < 0) return Refuse(choices.file + ": " + problem);
  // FILE itself, by whatever name, or another conversation. A device is never the same as itself.
  if (SameFile(choices.log_path, choices.log_path))
    return Refuse(choices.log_path + " exists already");
  return RunLogged(choices.log_path, [&](ConversationLog* log) {
    Replay replay{.turns = TurnsOf(lines),
                  .at_once = choices.at_once,
                  .log = TellDifference,
                  .log_context = log};
    SimulatedInstrument instrument = MakeReplayInstrument(replay);
    Choices host;
    host.link_path = choices.link_path;
    return RunBehindTerminal(instrument, host, log);
  });
}

int RunAnonymise(const std::vector<std::string>& arguments) {
  if (arguments.size() != 3) return Refuse("anonymise needs a conversation and a name to write");
  std::string text;
  std::string problem = ReadText(arguments[1], text);
  if (!problem.empty()) return Refuse(problem);
  std::string anonymous;
  const int changed = AnonymiseConversation(text, anonymous, problem);
  if (changed < 0) return Refuse(arguments[1] + ": " + problem);
  // Refused when it exists: the original is evidence, and easily named by mistake.
  const FileResult result = WriteWholeFile(arguments[2], anonymous, IfExists::kRefuse);
  if (result.problem != FileProblem::kNone) return Refuse(arguments[2] + ": " + result.reason);
  (void)std::printf("%d lines changed\n", changed);
  return 0;
}

}  // namespace

std::string ConversationUsage() {
  return std::string(kUsage);
}

bool IsConversationCommand(const std::vector<std::string>& arguments) {
  return !arguments.empty() && (arguments[0] == kReplay || arguments[0] == kAnonymise);
}

int RunConversationCommand(const std::vector<std::string>& arguments) {
  return arguments[0] == kReplay ? RunReplay(arguments) : RunAnonymise(arguments);
}

}  // namespace skyhaul
