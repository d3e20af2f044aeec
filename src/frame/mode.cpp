// The settings that casts read.
#include <bcast/casts.h>

bcast_var global_bcast_var = {0, 0};

void bcast_dll_var_init(int32_t compat_mode, int32_t compat_mode2) { global_bcast_var = {compat_mode, compat_mode2}; }
