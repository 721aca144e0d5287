#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/console/batch.h"
#include "app/console/batch_job.h"
#include "core/operation.h"
#include "files/formats.h"

namespace skyhaul {

// What one batch run works with and has done so far.
struct Batch {
  const BatchRun* run = nullptr;
  const CommandLineBlock* block = nullptr;
  Shell shell;
  Operation operation;
  std::vector<std::string> written;  // paths of the files written
};

// Tells the client, if there is one, trying again until the patience is used up. A client that
// cannot be told is only reported.
void Tell(const Batch& batch, const std::string& text, uint32_t patience_ms = 0);

// Tells the client that the run has ended and what it has written. Returns the exit status.
int Finish(const Batch& batch, bool done);

// Prints a result to standard output.
void Print(const Batch& batch, const std::string& text);

// Two lines that say which instrument answered; empty when none did.
std::string Identity(const JobOutcome& outcome);

// Told before a transfer: a folder that nothing can be written to should not cost the whole of it.
// Returns 0, or -1 after a message with the title.
int CheckFolder(const Batch& batch, const std::string& folder, const char* title);

// The same for one file: its format can be written, its folder is there, and it does not exist
// unless it may be replaced. Titled "Writing file".
int CheckTarget(const Batch& batch, const std::string& path, const char* keyword, FileKind kind);

// A job with the batch run's settings that takes data along.
JobOutcome RunJob(const Batch& batch, uint32_t access_type, JobData data = {});

// The commands, each from its start to its notice. They return the exit status.
int RunIgcLog(Batch& batch);
int RunTrackFile(Batch& batch);
int RunFlightList(Batch& batch);
int RunReadWaypoints(Batch& batch);
int RunWriteWaypoints(Batch& batch);
int RunWriteAirspaces(Batch& batch);
int RunConvertWaypoints(Batch& batch);
int RunConvertToKml(Batch& batch);

}  // namespace skyhaul
