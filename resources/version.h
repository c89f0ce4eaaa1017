/* The program's version: the only place that states it. The build, the manifest, the data files and the About
   box follow. */
#pragma once

#define KARDEL_VERSION_MAJOR 1
#define KARDEL_VERSION_MINOR 28
#define KARDEL_VERSION_REVISION 0

#define KARDEL_TEXT_OF_NUMBER(n) #n
#define KARDEL_TEXT_OF(n) KARDEL_TEXT_OF_NUMBER(n)
#define KARDEL_VERSION_TEXT              \
    KARDEL_TEXT_OF(KARDEL_VERSION_MAJOR) \
    "." KARDEL_TEXT_OF(KARDEL_VERSION_MINOR) "." KARDEL_TEXT_OF(KARDEL_VERSION_REVISION)
