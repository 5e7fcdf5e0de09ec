// VOZStatus.h: failure codes.
//
// E_FAIL, the one failure code of the drivers, is the negative number whose low 32 bits are 0x80004005, as an int or a
// long, on every platform. E_NOINTERFACE, 0x80004002 in the same manner, is the code of an object that lacks the
// interface it is asked for.

#ifndef VOZSTATUS_H
#define VOZSTATUS_H

#ifndef E_FAIL
constexpr int E_FAIL = -2147467259;
#endif
#ifndef E_NOINTERFACE
constexpr int E_NOINTERFACE = -2147467262;
#endif

#endif
