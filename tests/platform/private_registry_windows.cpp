#include "private_registry.h"

PrivateRegistry::PrivateRegistry() = default;
PrivateRegistry::~PrivateRegistry() = default;
