/* The library's version, for its resources; the build's own version is taken from here. */
#ifndef QLX99_RESOURCES_VERSION_H_
#define QLX99_RESOURCES_VERSION_H_

#define QLX99_VERSION_NUMBERS 0, 1, 0, 0
#define QLX99_VERSION_TEXT "0.1.0"

#endif
