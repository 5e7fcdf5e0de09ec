// ExportedByVOZDravo.h: marks what leaves the library's shared module.

#ifndef EXPORTEDBYVOZDRAVO_H
#define EXPORTEDBYVOZDRAVO_H

#if defined(_WIN32)
#if defined(VOZDravo_BUILDING)
#define ExportedByVOZDravo __declspec(dllexport)
#else
#define ExportedByVOZDravo __declspec(dllimport)
#endif
#else
#define ExportedByVOZDravo __attribute__((visibility("default")))
#endif

#endif
