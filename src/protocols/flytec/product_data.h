#pragma once

#include <string>
#include <string_view>

#include "device/job.h"

namespace skyhaul::flytec {

// What an instrument of the family reports about itself.
struct ProductData {
  std::string device_name;    // up to 16 characters
  std::string pilot_name;     // up to 40
  std::string serial_number;  // up to 7
  std::string software;       // up to 6, without the sentence's checksum

  friend bool operator==(const ProductData&, const ProductData&) = default;
};

// Reads one collected line. Returns 0, or -1 when it is not a product data line. The texts lose
// blanks at both ends, and each run of blanks inside becomes one.
int ParseProductData(std::string_view line, ProductData& data);

// Opens the job's port (or tries the candidates when it is chosen automatically), asks for the
// instrument's identification, fills the job's identity texts, and waits until the instrument is
// ready for the next command. Returns 0, or a negative number after a message (or "Transfer
// aborted").
int ReadProductData(Job& job, ProductData& data);

}  // namespace skyhaul::flytec
