/* c_caller CASE: a caller in C, with nothing but what the package gives it. Prints the case's
   record as it is delivered. */
#include <stdio.h>

#include "qlx99.h"

/* Visible, so that the linker has to find every one of them. */
typedef void (*Export)(void);
extern const Export kExports[];
const Export kExports[] = {
    (Export)GetDocuRoot,  (Export)GetProgramRoot,   (Export)UserInit,    (Export)UserNext,
    (Export)ZtkodoliInit, (Export)ZtkodoliNext,     (Export)WVInit,      (Export)WVNext,
    (Export)WVNew,        (Export)WVChange,         (Export)WVDelete,    (Export)SLesenDLL,
    (Export)ALesenDLL,    (Export)BLesenDLL,        (Export)BListeInit,  (Export)BListeNext,
    (Export)GetDokuNr,    (Export)GetAdrFieldsMain, (Export)GetAdressTyp};

int main(int argc, char** argv) {
  char record[QLX99_RECORD_SIZE];
  if (argc != 2 || SLesenDLL(argv[1], record) != QLX99_TRUE) return 1;
  puts(record);
  return 0;
}
