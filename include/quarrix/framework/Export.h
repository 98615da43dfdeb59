#pragma once
// Marks the classes and functions that libquarrix.so exports; everything else stays hidden.
#define QUARRIX_API __attribute__((visibility("default")))
