/* The program's version: the one place that says it. */
#pragma once

#define KARDEL_VERSION_MAJOR    1
#define KARDEL_VERSION_MINOR    28
#define KARDEL_VERSION_REVISION 0
#define KARDEL_VERSION_TEXT     "1.28.0"
