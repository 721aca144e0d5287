#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace skyhaul::flytec_simulator {

struct Simulator;

// What an answer is made of: pieces that leave one after the other, a sentence each or a whole
// flight. No piece at all is an answer too.
using Answer = std::vector<std::string>;

// Does what a request asks for; body is the sentence between '$' and '*'. Returns false when the
// instrument has nothing to say to it, not even that it is done.
bool AnswerTo(Simulator& simulator, std::string_view body, Answer& answer);

}  // namespace skyhaul::flytec_simulator
