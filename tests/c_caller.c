/* c_caller CASE: a caller in C, with nothing but what the package gives it. Prints the case's
   record as it is delivered. */
#include <stdio.h>

#include "frame/export_list.h"
#include "qlx99.h"

/* Visible, so that the linker has to find every export. */
typedef void (*Export)(void);
#define ADDRESS(name, delegate, arguments, fields, result) (Export)(name),
extern const Export kExports[];
const Export kExports[] = {QLX99_EXPORTS(ADDRESS) NULL};

int main(int argc, char** argv) {
  char record[QLX99_RECORD_SIZE];
  if (argc != 2 || SLesenDLL(argv[1], record) != QLX99_TRUE) return 1;
  puts(record);
  return 0;
}
