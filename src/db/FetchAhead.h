#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>

namespace velda {

class QueryStatement;

// Reads an executed statement's rows on a second thread, a few blocks of rows
// ahead of the caller, so that the driver's work and the caller's overlap: a
// long extraction then takes about as long as the driver alone needs to hand
// over its rows. The rows come in the database's order, their texts cleaned
// as QueryStatement::fetch() cleans them.
//
// The constructor allocates every buffer, so the reading thread allocates
// nothing and never throws. When no thread can be started, the caller's own
// thread reads each block when it needs it.
class FetchAhead {
 public:
  // Starts reading. Throws std::bad_alloc.
  explicit FetchAhead(QueryStatement& statement);
  // Stops the reading thread and waits for it.
  ~FetchAhead();
  FetchAhead(const FetchAhead&) = delete;
  FetchAhead& operator=(const FetchAhead&) = delete;

  // Sets texts[i] to column i's text of the next row (null for NULL), valid
  // until the next call, and returns true; false at the end of the rows or on
  // a driver error, which the statement's status then tells.
  [[nodiscard]] bool next(const char** texts);

 private:
  struct Value {
    uint32_t offset;  // where the text starts in the block's bytes
    long indicator;   // the driver's length, or ResultColumn::kNullIndicator
  };
  struct Block {
    std::unique_ptr<char[]> bytes;
    std::unique_ptr<Value[]> values;  // row after row, a value per column
    size_t rows = 0;
    bool last = false;  // no block follows: the rows ended or failed
  };

  void read();
  void fill(Block& block);
  // Hands the block being read back to the reading thread and takes the
  // next one; false when none follows.
  bool advance();

  QueryStatement& statement_;
  const size_t columns_;
  const size_t blockRows_;
  const size_t blockBytes_;
  std::unique_ptr<Block[]> blocks_;

  std::mutex mutex_;
  std::condition_variable changed_;
  size_t readyBlocks_ = 0;  // filled and not yet given back, the caller's included
  std::atomic<bool> stopping_{false};
  std::thread reader_;

  size_t filling_ = 0;  // the reading side's block number
  size_t reading_ = 0;  // the caller's block number
  Block* current_ = nullptr;
  size_t row_ = 0;
};

}  // namespace velda
