// The room machine/ under the name of this one.
#pragma once

#include "machine/pick.h"
#include "machine/words.h"

namespace embedded {

using namespace machine;

} // namespace embedded
