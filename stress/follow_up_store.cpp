#include <array>
#include <charconv>
#include <map>
#include <string_view>
#include <vector>

#include "frame/exports.h"
#include "stress/store.h"

namespace stress {
namespace {

constexpr std::int32_t kDelivered = -1;
constexpr std::size_t kTextLength = 150;

// Of the fields of a WVNext record.
enum Field : std::size_t { kText = 3, kSecondUserId = 9, kId = 11, kFieldCount };

std::vector<std::string> FieldsOf(std::string_view record) {
  std::vector<std::string> fields(1);
  for (const char c : record) {
    if (c == '|') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

int NumberIn(std::string_view text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

// An item's follow-up: "item 17 of 3", and a letter that follows from the item to the field's end.
std::string TextOf(int slot, int item) {
  std::string text = "item " + std::to_string(item) + " of " + std::to_string(slot) + ' ';
  text.resize(kTextLength, static_cast<char>('a' + item % 26));
  return text;
}

class FollowUps : public Store {
 public:
  explicit FollowUps(int slot) : slot_(slot), caseNumber_(CaseNumberOf(slot)) {}

  void Add(int item) override {
    Must(qlx99::WVNew(caseNumber_.c_str(), "1", "01.02.2003", "1", std::to_string(item).c_str(),
                      "0", TextOf(slot_, item).c_str()),
         "WVNew");
  }

  void Replace(int item, int by) override {
    Must(qlx99::WVChange(IdOf(item).c_str(), "1", "01.02.2003", "1", std::to_string(by).c_str(),
                         "0", TextOf(slot_, by).c_str()),
         "WVChange");
  }

  void Remove(int item) override { Must(qlx99::WVDelete(IdOf(item).c_str()), "WVDelete"); }

  std::set<int> Items() override {
    ids_.clear();
    std::set<int> items;
    const std::int32_t count = qlx99::WVInit(caseNumber_.c_str());
    for (int position = 1; position <= count; ++position) {
      std::array<char, 1025> record{};
      qlx99::WVNext(caseNumber_.c_str(), std::to_string(position).c_str(), record.data());
      const auto fields = FieldsOf(record.data());
      // The office's own follow-ups, and positions that have gone meanwhile, are none of ours.
      if (fields.size() == kFieldCount && fields[kText].starts_with("item ")) {
        items.insert(Take(fields));
      }
    }
    return items;
  }

  bool ReadsInOneWalk() const override { return false; }

 private:
  static void Must(std::int32_t result, const char* what) {
    if (result != kDelivered) throw Fault(Fault::kRefused, std::string(what) + " was refused");
  }

  int Take(const std::vector<std::string>& fields) {
    const int item = NumberIn(std::string_view(fields[kText]).substr(5));
    if (fields[kText] != TextOf(slot_, item) || fields[kSecondUserId] != std::to_string(item)) {
      throw Fault(Fault::kTorn, "follow-up " + fields[kId] + " is torn: " + fields[kText]);
    }
    if (!ids_.emplace(item, fields[kId]).second) {
      throw Fault(Fault::kDoubled, "item " + std::to_string(item) + " is there twice");
    }
    return item;
  }

  // The record manager names follow-ups; only reading tells how.
  const std::string& IdOf(int item) {
    if (!ids_.contains(item)) Items();
    const auto found = ids_.find(item);
    if (found != ids_.end()) return found->second;
    throw Fault(Fault::kLost, "item " + std::to_string(item) + " has gone");
  }

  int slot_;
  std::string caseNumber_;
  std::map<int, std::string> ids_;
};

}  // namespace

std::string CaseNumberOf(int slot) { return std::to_string(10'000'001 + slot); }

std::unique_ptr<Store> OpenFollowUps(int slot) { return std::make_unique<FollowUps>(slot); }

}  // namespace stress
