
#ifndef QWUTILITIES_EXPORT_H
#define QWUTILITIES_EXPORT_H

#ifdef QWUTILITIES_STATIC_DEFINE
#  define QWUTILITIES_EXPORT
#  define QWUTILITIES_NO_EXPORT
#else
#  ifndef QWUTILITIES_EXPORT
#    ifdef QWUtilities_EXPORTS
        /* We are building this library */
#      define QWUTILITIES_EXPORT __attribute__((visibility("default")))
#    else
        /* We are using this library */
#      define QWUTILITIES_EXPORT __attribute__((visibility("default")))
#    endif
#  endif

#  ifndef QWUTILITIES_NO_EXPORT
#    define QWUTILITIES_NO_EXPORT __attribute__((visibility("hidden")))
#  endif
#endif

#ifndef QWUTILITIES_DEPRECATED
#  define QWUTILITIES_DEPRECATED __attribute__ ((__deprecated__))
#endif

#ifndef QWUTILITIES_DEPRECATED_EXPORT
#  define QWUTILITIES_DEPRECATED_EXPORT QWUTILITIES_EXPORT QWUTILITIES_DEPRECATED
#endif

#ifndef QWUTILITIES_DEPRECATED_NO_EXPORT
#  define QWUTILITIES_DEPRECATED_NO_EXPORT QWUTILITIES_NO_EXPORT QWUTILITIES_DEPRECATED
#endif

#if 0 /* DEFINE_NO_DEPRECATED */
#  ifndef QWUTILITIES_NO_DEPRECATED
#    define QWUTILITIES_NO_DEPRECATED
#  endif
#endif

#endif /* QWUTILITIES_EXPORT_H */
