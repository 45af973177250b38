/* The exports that macros call, in the order of qlx99.h: all that more than one place says of them.
   Whoever goes through every export expands this list, in C++ or C:

     EXPORT(name, delegate, arguments, fields, result)

   name       as qlx99.h declares it; the compiler knows its arguments from there
   delegate   what the sibling library calls it; null where that has nothing of the kind
   arguments  their names, without the record's
   fields     of its record, most of them texts: "name:form" tells another form, which
              office/export_table.h lists; empty for an export without a record
   result     what its result means */
#ifndef QLX99_FRAME_EXPORT_LIST_H
#define QLX99_FRAME_EXPORT_LIST_H

#define QLX99_EXPORTS(EXPORT)                                                                     \
  EXPORT(GetDocuRoot, "GetDocuRoot", "length", "path", "1: delivered")                            \
  EXPORT(GetProgramRoot, "GetProgramRoot", "length", "path", "1: there is such a folder")         \
  EXPORT(UserInit, "GetCountOfUser", "", "", "number of users")                                   \
  EXPORT(UserNext, "GetUserFields", "index", "name thirdText secondText shortSign number:number", \
         "-1: delivered")                                                                         \
  EXPORT(ZtkodoliInit, "GetCountOfWV", "", "", "number of follow-up kinds")                       \
  EXPORT(ZtkodoliNext, "GetWVFields", "index", "name:freeText number:number id:number",           \
         "-1: delivered")                                                                         \
  EXPORT(WVInit, "GetCountOfWVFromCase", "caseNumber", "", "number of follow-ups")                \
  EXPORT(WVNext, "GetWVFieldsFromCase", "caseNumber index",                                       \
         "dueDate:date kindName kindId:number text:freeText userName userSign userId:number "     \
         "secondUserName secondUserSign secondUserId:number partyPosition:number id:number",      \
         "-1: delivered")                                                                         \
  EXPORT(WVNew, nullptr, "caseNumber kindId dueDate userId secondUserId partyRecordId text", "",  \
         "-1: done")                                                                              \
  EXPORT(WVChange, nullptr, "followUpId kindId dueDate userId secondUserId partyRecordId text",   \
         "", "-1: done")                                                                          \
  EXPORT(WVDelete, nullptr, "followUpId", "", "-1: done")                                         \
  EXPORT(SLesenDLL, "GetCaseFields", "caseNumber",                                                \
         "rubrum text40 text30 shortCode caseType amount:amount firstDate:date secondDate:date "  \
         "longText:freeText userName userSign archiveDate:date archiveMark partyCount:number "    \
         "currencyCode",                                                                          \
         "-1: delivered")                                                                         \
  EXPORT(ALesenDLL, "GetAdrFields", "caseNumber addressNumber linkNumber",                        \
         "firstName name letterSalutation title nameAddition freeText shortField1 shortField2 "   \
         "shortField3 shortField4 shortField5 wideField street postalCode place "                 \
         "secondPostalCode secondPlace addressAddition nationality bankName bankCode "            \
         "accountNumber contactAddition linkText relationDesignation",                            \
         "-1: delivered")                                                                         \
  EXPORT(BLesenDLL, "GetPartFields", "role caseNumber spare noDialog",                            \
         "addressNumber:number relationCode always0:number linkNumber:numberOrNone",              \
         "-1: delivered")                                                                         \
  EXPORT(BListeInit, "GetCountOfParts", "caseNumber", "", "number of parties")                    \
  EXPORT(BListeNext, "GetAdrFieldsWithNumber", "caseNumber index",                                \
         "relationCode:relationCode salutation name nameAddition street:filled place "            \
         "addressNumber:number linkNumber:numberOrNone partyRecordId:number",                     \
         "-1: delivered")                                                                         \
  EXPORT(GetAdrFieldsMain, "GetAdrFieldsMain", "first second third fourth", "", "-1: done")       \
  EXPORT(GetAdressTyp, "GetAdressTyp", "first second", "", "-1: done")                            \
  EXPORT(GetDokuNr, "GetNextDoc", "caseNumber", "", "the next document number")

#endif
