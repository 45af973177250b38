// Every record file of the office, for whoever treats all of them alike: the tool makes, fills,
// shows and checks them by this list.
#pragma once

#include <array>

#include "addresses/address_file.h"
#include "addresses/address_link_file.h"
#include "addresses/bank_connection_file.h"
#include "addresses/contact_person_file.h"
#include "addresses/nationality_file.h"
#include "addresses/relation_file.h"
#include "addresses/salutation_file.h"
#include "addresses/title_file.h"
#include "caseparties/case_party_file.h"
#include "caseparties/document_number_file.h"
#include "cases/archive_file.h"
#include "cases/case_file.h"
#include "cases/case_type_file.h"
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
