// Why an operation was refused that needs an initialisation first.
#pragma once

#include <string>

#include "tools/zrbench/session.h"

namespace zrbench
{

// "unit 1 has no ACL records yet: acl init 1"; empty when nothing is missing.
std::string missingInit(const Session &session, const Invocation &invocation);

} // namespace zrbench
