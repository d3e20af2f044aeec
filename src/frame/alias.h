// A second name for a cast of the same file: bcast_length_fn bcast_int_to_varchar2 ALIAS_OF(bcast_int_to_char);
#pragma once

#define ALIAS_OF(name) __attribute__((alias(#name)))
