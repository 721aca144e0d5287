#pragma once

#include <atomic>

namespace skyhaul {

// True when standard error is a terminal that a line can be rewritten on.
bool ErrorIsTerminal();

// From now on writing to a pipe that nobody reads any more, or beyond the limit for a file's size
// (ulimit -f), is an ordinary error and does not end the program.
void SurviveFailedWrites();

// From now on the terminal shows our texts as UTF-8. It gets its own encoding back at the program's
// end. Does nothing where that is the person's choice.
void WriteUtf8();

// From now on the first interrupt (Ctrl-C, or a request to end) is only counted, and the second
// ends the program at once with status 130. The first also sets the flag, unless it is null; the
// flag must live as long as the program.
void CountInterrupts(std::atomic<bool>* first);

// How many interrupts there were; 0 when they are not counted.
int Interrupts();

// Calls a routine once when there has been a counted interrupt: on a thread of its own when the
// interrupt comes, or from within this function when it has come before. The routine may lock and
// wait, unlike a signal handler, but must not call OnInterrupt. It takes the place of the previous
// one; null withdraws it. When this returns, the previous routine is not running and will not run,
// so that its context may go.
void OnInterrupt(void (*routine)(void* context), void* context);

}  // namespace skyhaul
