
#ifndef QWBASE_EXPORT_H
#define QWBASE_EXPORT_H

#ifdef QWBASE_STATIC_DEFINE
#  define QWBASE_EXPORT
#  define QWBASE_NO_EXPORT
#else
#  ifndef QWBASE_EXPORT
#    ifdef QWBase_EXPORTS
        /* We are building this library */
#      define QWBASE_EXPORT __attribute__((visibility("default")))
#    else
        /* We are using this library */
#      define QWBASE_EXPORT __attribute__((visibility("default")))
#    endif
#  endif

#  ifndef QWBASE_NO_EXPORT
#    define QWBASE_NO_EXPORT __attribute__((visibility("hidden")))
#  endif
#endif

#ifndef QWBASE_DEPRECATED
#  define QWBASE_DEPRECATED __attribute__ ((__deprecated__))
#endif

#ifndef QWBASE_DEPRECATED_EXPORT
#  define QWBASE_DEPRECATED_EXPORT QWBASE_EXPORT QWBASE_DEPRECATED
#endif

#ifndef QWBASE_DEPRECATED_NO_EXPORT
#  define QWBASE_DEPRECATED_NO_EXPORT QWBASE_NO_EXPORT QWBASE_DEPRECATED
#endif

#if 0 /* DEFINE_NO_DEPRECATED */
#  ifndef QWBASE_NO_DEPRECATED
#    define QWBASE_NO_DEPRECATED
#  endif
#endif

#endif /* QWBASE_EXPORT_H */
