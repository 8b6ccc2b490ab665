#include "db/FetchAhead.h"

#include <algorithm>
#include <cstring>
#include <system_error>

#include "db/QueryStatement.h"
#include "db/extraction/FetchedText.h"

namespace velda {

namespace {

// Blocks of rows read ahead: enough for the reading thread to go on while
// the caller stops for a few milliseconds, as it does when fresh memory
// comes in a huge page.
constexpr size_t kBlockCount = 8;
// A block holds at most this many rows, at most kBlockValues values and at
// least one row however wide.
constexpr size_t kMaxBlockRows = 1024;
constexpr size_t kBlockValues = 16384;
constexpr size_t kBlockBytes = 256 * 1024;
constexpr size_t kValueRoom = ResultColumn::kValueCapacity + 1;

// The bytes of a bound value up to its terminator: the driver's length when
// it wrote its terminator there, so that most values are not measured.
size_t boundLength(const ResultColumn& column) {
  const long length = column.indicator;
  if (length >= 0 && static_cast<size_t>(length) <= ResultColumn::kValueCapacity && column.buffer[length] == '\0')
    return static_cast<size_t>(length);
  return strnlen(column.buffer, ResultColumn::kValueCapacity);
}

}  // namespace

FetchAhead::FetchAhead(QueryStatement& statement)
    : statement_(statement),
      columns_(static_cast<size_t>(std::max(statement.columnCount(), 1))),
      blockRows_(std::clamp<size_t>(kBlockValues / columns_, 1, kMaxBlockRows)),
      blockBytes_(std::max(kBlockBytes, columns_ * kValueRoom)) {
  blocks_ = std::make_unique<Block[]>(kBlockCount);
  for (size_t b = 0; b < kBlockCount; ++b) {
    blocks_[b].bytes = std::make_unique_for_overwrite<char[]>(blockBytes_);
    blocks_[b].values = std::make_unique_for_overwrite<Value[]>(blockRows_ * columns_);
  }
  try {
    reader_ = std::thread([this] { read(); });
  } catch (const std::system_error&) {
    // No second thread: next() reads each block itself.
  }
}

FetchAhead::~FetchAhead() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_all();
  if (reader_.joinable()) reader_.join();
}

void FetchAhead::read() {
  for (;;) {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return stopping_ || readyBlocks_ < kBlockCount; });
    if (stopping_) return;
    lock.unlock();
    Block& block = blocks_[filling_++ % kBlockCount];
    fill(block);
    lock.lock();
    ++readyBlocks_;
    lock.unlock();
    changed_.notify_all();
    if (block.last) return;
  }
}

// Fetches rows into the block while one more row surely fits, copying each
// bound value up to its terminator.
void FetchAhead::fill(Block& block) {
  block.rows = 0;
  block.last = false;
  size_t used = 0;
  const int columnCount = statement_.columnCount();
  while (block.rows < blockRows_ && used + columns_ * kValueRoom <= blockBytes_) {
    if (stopping_ || !statement_.fetchBound()) {
      block.last = true;
      return;
    }
    Value* values = &block.values[block.rows * columns_];
    for (int c = 0; c < columnCount; ++c) {
      const ResultColumn& column = statement_.column(c);
      values[c].indicator = column.indicator;
      if (column.indicator == ResultColumn::kNullIndicator) continue;
      const size_t length = boundLength(column);
      std::memcpy(&block.bytes[used], column.buffer, length);
      block.bytes[used + length] = '\0';
      values[c].offset = static_cast<uint32_t>(used);
      used += length + 1;
    }
    ++block.rows;
  }
}

bool FetchAhead::advance() {
  std::unique_lock<std::mutex> lock(mutex_);
  if (current_) {
    if (current_->last) return false;
    --readyBlocks_;
    changed_.notify_all();
  }
  if (!reader_.joinable() && readyBlocks_ == 0) {
    fill(blocks_[filling_++ % kBlockCount]);
    ++readyBlocks_;
  }
  changed_.wait(lock, [this] { return readyBlocks_ > 0; });
  current_ = &blocks_[reading_++ % kBlockCount];
  row_ = 0;
  return true;
}

bool FetchAhead::next(const char** texts) {
  while (!current_ || row_ == current_->rows)
    if (!advance()) return false;
  Value* values = &current_->values[row_++ * columns_];
  for (int c = 0; c < statement_.columnCount(); ++c) {
    if (values[c].indicator == ResultColumn::kNullIndicator) {
      texts[c] = nullptr;
      continue;
    }
    char* text = &current_->bytes[values[c].offset];
    cleanBoundText(text, ResultColumn::kValueCapacity, values[c].indicator);
    texts[c] = text;
  }
  return true;
}

}  // namespace velda
