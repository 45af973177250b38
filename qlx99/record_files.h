// Every record file of the office, for whoever treats all of them alike: the tool makes, fills,
// shows and checks them by this list.
#pragma once

#include <array>

#include "addresses/address_files.h"
#include "addresses/party_files.h"
#include "caseparties/case_party_file.h"
#include "caseparties/document_number_file.h"
#include "cases/case_code_files.h"
#include "cases/case_file.h"
#include "followups/follow_up_file.h"
#include "followups/follow_up_kind_file.h"
#include "users/user_file.h"

namespace qlx99 {

inline constexpr std::array kRecordFiles{
    LayoutOf<UserRecord>(),           LayoutOf<CaseTypeRecord>(),
    LayoutOf<ArchiveRecord>(),        LayoutOf<CaseRecord>(),
    LayoutOf<NationalityRecord>(),    LayoutOf<SalutationRecord>(),
    LayoutOf<TitleRecord>(),          LayoutOf<AddressRecord>(),
    LayoutOf<BankConnectionRecord>(), LayoutOf<ContactPersonRecord>(),
    LayoutOf<RelationRecord>(),       LayoutOf<AddressLinkRecord>(),
    LayoutOf<CasePartyRecord>(),      LayoutOf<FollowUpKindRecord>(),
    LayoutOf<FollowUpRecord>(),       LayoutOf<DocumentNumberRecord>(),
};

}  // namespace qlx99
