/* libbcast: batch casts between the SQL types of a vectorised engine.
 *
 *     column.h  the records: columns, elements, working values
 *     codes.h   failure codes
 *     values.h  what other numbers mean: operators, types, shapes, modes, limits
 *     casts.h   the contract of a call, and all casts by group
 *
 * embedded.h, not included here, has columns and services for programs that
 * have no engine of their own.
 */
#ifndef BCAST_BCAST_H
#define BCAST_BCAST_H

#include "casts.h"  /* IWYU pragma: export */
#include "codes.h"  /* IWYU pragma: export */
#include "column.h" /* IWYU pragma: export */
#include "values.h" /* IWYU pragma: export */

#endif
