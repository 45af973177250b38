// Lists that are one whole record file, in the order of a key: how many records there are, and the
// one at a position.
#pragma once

#include <cstdint>

#include "frame/arguments.h"
#include "store/record_file.h"
#include "store/result_line.h"

namespace qlx99 {

// Returns 0 also when the file cannot be opened; then the user has been told why.
template <class Layout>
std::int32_t CountCatalogue(const typename Layout::Key& key, const Message& noDataPath) {
  if (!EnsureRecordManager()) return 0;
  const auto dataRoot = ReadDataRoot(noDataPath);
  if (!dataRoot) return 0;
  RecordFile<Layout> file(*dataRoot);
  return file.IsOpen() ? CountRecords(file.WalkAll(key)) : 0;
}

// The record at position `index`, which counts from 1. Nothing is composed for a position beyond
// the last record. Returns what HandOver does, and 0 without a record manager.
template <class Layout>
std::int32_t DeliverFromCatalogue(const typename Layout::Key& key, const Message& noDataPath,
                                  const char* index, char* buffer,
                                  void (*compose)(const Record<Layout>&, ResultLine&)) {
  if (!EnsureRecordManager()) return 0;
  const std::int32_t position = LeadingNumber(index);
  ResultLine line;
  if (const auto dataRoot = ReadDataRoot(noDataPath)) {
    RecordFile<Layout> file(*dataRoot);
    if (file.IsOpen() && WalkToPosition(file.WalkAll(key), position)) compose(file.Current(), line);
  }
  return HandOver(line, buffer, HandOverForm::kLineOnly);
}

}  // namespace qlx99
