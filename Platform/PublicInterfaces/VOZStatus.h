// VOZStatus.h: the one failure code of the drivers.
//
// E_FAIL is the negative number whose low 32 bits are 0x80004005, as an int or a long, on every platform.

#ifndef VOZSTATUS_H
#define VOZSTATUS_H

#ifndef E_FAIL
constexpr int E_FAIL = -2147467259;
#endif

#endif
