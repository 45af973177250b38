/* The numbers of the dialogs and their controls, for the resource script and the dialog procedures.
   Macros for plain numbers, because the resource compiler reads this file too. */
#ifndef QLX99_RESOURCES_RESOURCE_H_
#define QLX99_RESOURCES_RESOURCE_H_

/* Buttons, in every dialog. */
#define IDC_TAKE 1
#define IDC_CANCEL 2

/* Choice of a bank connection, and of a contact person. */
#define IDD_BANK_CHOICE 1
#define IDC_BANK_LINES 403
#define IDC_BANK_NUMBERS 601

#define IDD_CONTACT_CHOICE 2
#define IDC_CONTACT_LINES 303
#define IDC_CONTACT_NUMBERS 701

#define IDC_CHOICE_REASON 501
#define IDC_CHOICE_REQUEST 502

/* Selection of a party. */
#define IDD_PARTY_SELECTION 200
#define IDC_CASE_NUMBER_LABEL 105
#define IDC_CASE_NUMBER 206
#define IDC_RUBRUM_LABEL 107
#define IDC_RUBRUM 208
#define IDC_PARTIES_LABEL 503
#define IDC_PARTY_LINES 201
#define IDC_RELATIONS_LABEL 104
#define IDC_RELATIONS 202
#define IDC_PARTY_REFERENCES 301
#define IDC_UNUSED_LIST 401

#endif
