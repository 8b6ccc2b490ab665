#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "db/extraction/Extraction.h"

namespace velda {

class ConsoleLog;
class SymbolicMatrix;

// What the extraction command's ending needs from the document that owns
// the project.
struct ExtractionEndingHooks {
  // Takes the new matrix in place of the current one; false when it cannot.
  std::function<bool(std::unique_ptr<SymbolicMatrix>)> install;
  // Sets the project's descriptive fields that the query does not give to
  // "unknown" or "none".
  std::function<void()> resetDescriptiveFields;
};

// Whole 100 ms periods between the two instants.
long elapsedTicks(std::chrono::steady_clock::time_point start, std::chrono::steady_clock::time_point end);

// Ends the extraction command: reports a failure or an empty result in a
// message box, otherwise installs the matrix and writes the console lines
// ("*stopped*" when cancelled, the time, the summary), then applies the
// privacy threshold when it is above 0 and resets the descriptive fields.
// Returns 1 when the new matrix was installed.
int endExtraction(ExtractionResult result, int32_t privacyThreshold, ConsoleLog& console,
                  const ExtractionEndingHooks& hooks);

}  // namespace velda
