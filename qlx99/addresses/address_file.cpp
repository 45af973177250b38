#include "addresses/address_file.h"

namespace qlx99 {

void AddStreet(const Record<AddressRecord>& address, ResultLine& dest) {
  dest.Append(TrimBlanks(address[AddressRecord::street]));
  dest.Append(" ");
  dest.AddVerbatim(TrimBlanks(address[AddressRecord::houseNumber]));
}

}  // namespace qlx99
