// The sample office's texts: a mistake is told, anything else becomes records whose fields are read
// back as they were written.
#include "office/sample_file.h"

#include "fuzz/input.h"
#include "office/failure.h"
#include "office/record_text.h"
#include "record_files.h"

namespace {

// Whether the record's fields, as they are shown, make the same record. Control characters are
// shown by their numbers, and zero bytes at a field's end not at all.
bool IsReadBack(const qlx99::RecordLayout& layout, const std::string& record) {
  std::string again = office::BlankRecord(layout);
  for (const qlx99::FieldInfo& field : layout.fields) {
    const std::string text = office::FieldText(field, record);
    if (text.find("\\x") != std::string::npos) return true;
    if (!text.empty()) office::SetField(field, text, again);
  }
  return again == record;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz::Input input(bytes, size);
  const qlx99::RecordLayout& layout = qlx99::kRecordFiles[input.Choice(qlx99::kRecordFiles.size())];
  const std::string text = input.Bytes(size);
  std::vector<std::string> records;
  try {
    records = office::ParseSample(layout, {"sample.txt", text});
  } catch (const office::Failure&) {
    return 0;
  }
  if (text.find('\0') != std::string::npos) return 0;
  for (const std::string& record : records) {
    if (!IsReadBack(layout, record)) fuzz::Found("a record is read back differently");
  }
  return 0;
}
