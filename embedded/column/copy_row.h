// The operation by which a column's rows are copied into another one.
#pragma once

#include <bcast/embedded.h>

namespace embedded {

// That of a column of that type.
bdta3_copy_row_fn *copy_row_of(bcast_type type);

} // namespace embedded
