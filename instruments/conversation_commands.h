#pragma once

#include <string>
#include <vector>

namespace skyhaul {

// The part of --help about what skyhaul-instrument does with recorded conversations.
std::string ConversationUsage();

// True when the first argument asks for that instead of a family.
bool IsConversationCommand(const std::vector<std::string>& arguments);

// Plays a conversation back, or makes it anonymous. Returns the exit status, not 0 after a message.
int RunConversationCommand(const std::vector<std::string>& arguments);

}  // namespace skyhaul
