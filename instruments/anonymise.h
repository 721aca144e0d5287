#pragma once

#include <string>
#include <string_view>

namespace skyhaul {

// One line of a conversation (sentences, or records of a flight) without names and serial numbers:
// letters become X and digits 0 where a row of the table says so, and nothing else changes, the
// length neither. One bent letter of a sentence's name, a lost '$' and a lost line end are
// forgiven; what is damaged more may not be recognised. The checksum of a sentence is right again
// if it was right before, and wrong by the same bits if it was not.
std::string AnonymiseLine(std::string line);

// The same for a file of a conversation. What one side sent is put together first, because a name
// may lie on several lines and XOFF may stand inside it; then each line of the file is written back
// with its bytes. A name or number that was blanked once is blanked wherever else it stands, unless
// it is shorter than 3 characters. Remarks stay as they are. Returns the number of lines that
// changed, or -1 with a message when the file is none.
int AnonymiseConversation(std::string_view text, std::string& anonymous, std::string& message);

}  // namespace skyhaul
