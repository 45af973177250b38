// Party references: how BLesenDLL names one party of a case, "4711|25|0|815", and which parties
// count for a role.
#pragma once

#include <cstdint>

#include "addresses/relation_file.h"
#include "caseparties/case_party_file.h"
#include "parties/role.h"
#include "store/text_buffer.h"

namespace qlx99 {

using PartyReference = TextBuffer<49>;

// Whether a party's relation counts for a role, and the relation's code, empty when the relation
// could not be read.
struct RelationMatch {
  bool matches = true;
  TextBuffer<RelationRecord::code.width> code;
};

// A party whose relation is not in the file counts for every role: better offered once too often
// than lost.
RelationMatch MatchRelation(RecordCursor<RelationRecord>& relations, const Role& role,
                            std::int32_t relationId);

// Address number, relation code as stored, the digit 0, and the address-link number, empty when
// there is none.
PartyReference ReferenceOf(const Record<CasePartyRecord>& party, std::string_view relationCode);

}  // namespace qlx99
