
#ifndef QWPLATFORM_EXPORT_H
#define QWPLATFORM_EXPORT_H

#ifdef QWPLATFORM_STATIC_DEFINE
#  define QWPLATFORM_EXPORT
#  define QWPLATFORM_NO_EXPORT
#else
#  ifndef QWPLATFORM_EXPORT
#    ifdef QWPlatform_EXPORTS
        /* We are building this library */
#      define QWPLATFORM_EXPORT __attribute__((visibility("default")))
#    else
        /* We are using this library */
#      define QWPLATFORM_EXPORT __attribute__((visibility("default")))
#    endif
#  endif

#  ifndef QWPLATFORM_NO_EXPORT
#    define QWPLATFORM_NO_EXPORT __attribute__((visibility("hidden")))
#  endif
#endif

#ifndef QWPLATFORM_DEPRECATED
#  define QWPLATFORM_DEPRECATED __attribute__ ((__deprecated__))
#endif

#ifndef QWPLATFORM_DEPRECATED_EXPORT
#  define QWPLATFORM_DEPRECATED_EXPORT QWPLATFORM_EXPORT QWPLATFORM_DEPRECATED
#endif

#ifndef QWPLATFORM_DEPRECATED_NO_EXPORT
#  define QWPLATFORM_DEPRECATED_NO_EXPORT QWPLATFORM_NO_EXPORT QWPLATFORM_DEPRECATED
#endif

#if 0 /* DEFINE_NO_DEPRECATED */
#  ifndef QWPLATFORM_NO_DEPRECATED
#    define QWPLATFORM_NO_DEPRECATED
#  endif
#endif

#endif /* QWPLATFORM_EXPORT_H */
