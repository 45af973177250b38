// One record file and its copy: the same records, to the last byte, and those of one key value in
// the same order. Both are read and written through record managers alone, each through its own;
// what the file is made of, Stat says.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <utility>

#include "office/record_manager.h"

namespace office {

class CopiedFile {
 public:
  // Called for each record that is done.
  using Step = std::function<void()>;

  // Both record managers outlive this.
  CopiedFile(const RecordManager& from, std::filesystem::path source, const RecordManager& to,
             std::filesystem::path copy)
      : from_(&from), source_(std::move(source)), to_(&to), copy_(std::move(copy)) {}

  // Its file's name, without the folder.
  std::filesystem::path Name() const { return source_.filename(); }

  // How many records the file has.
  std::uint32_t CountRecords() const { return OpenSource().Facts().file.recordCount; }

  // Makes the copy, over an earlier one. Others may change the file meanwhile: IsComplete tells
  // whether that matters.
  void Copy(const Step& step) const;

  // Whether a copy can be given the order of the file along each of its keys. Otherwise it has it
  // by chance only.
  bool KeepsItsOrder() const;

  // Reads all of both and returns whether they are equal.
  bool IsComplete(const Step& step) const;

 private:
  TableFile OpenSource() const { return {*from_, source_, btrieve::kOpenReadOnly}; }
  TableFile OpenCopy() const { return {*to_, copy_, btrieve::kOpenNormal}; }

  const RecordManager* from_;
  std::filesystem::path source_;
  const RecordManager* to_;
  std::filesystem::path copy_;
};

}  // namespace office
