// Compiled and never run: what the headers of Python 2.7 say about the machine is true of the compiler's. There are none for
// MIPS any more, which takes those of the ARM that is of the same kind.
#include <Python.h>

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <pthread.h>
#include <sys/types.h>

static_assert(SIZEOF__BOOL == sizeof(bool));
static_assert(SIZEOF_SHORT == sizeof(short));
static_assert(SIZEOF_INT == sizeof(int));
static_assert(SIZEOF_LONG == sizeof(long));
static_assert(SIZEOF_LONG_LONG == sizeof(long long));
static_assert(SIZEOF_FLOAT == sizeof(float));
static_assert(SIZEOF_DOUBLE == sizeof(double));
static_assert(SIZEOF_LONG_DOUBLE == sizeof(long double));
static_assert(SIZEOF_WCHAR_T == sizeof(wchar_t));
static_assert(SIZEOF_VOID_P == sizeof(void*));
static_assert(SIZEOF_UINTPTR_T == sizeof(std::uintptr_t));
static_assert(SIZEOF_SIZE_T == sizeof(std::size_t));
static_assert(SIZEOF_TIME_T == sizeof(std::time_t));
static_assert(SIZEOF_OFF_T == sizeof(off_t));
static_assert(SIZEOF_FPOS_T == sizeof(std::fpos_t));
static_assert(SIZEOF_PID_T == sizeof(pid_t));
static_assert(SIZEOF_PTHREAD_T == sizeof(pthread_t));

#if defined(WORDS_BIGENDIAN) || !defined(DOUBLE_IS_LITTLE_ENDIAN_IEEE754)
constexpr int kByteOrder = __ORDER_BIG_ENDIAN__;
#else
constexpr int kByteOrder = __ORDER_LITTLE_ENDIAN__;
#endif
static_assert(kByteOrder == __BYTE_ORDER__ && kByteOrder == __FLOAT_WORD_ORDER__);

// The shape of an object, which the module and the interpreter share, is the release build's: no list of all objects.
static_assert(sizeof(PyObject) == 2 * sizeof(void*));
