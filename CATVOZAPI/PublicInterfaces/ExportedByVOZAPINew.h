// ExportedByVOZAPINew.h: marks what leaves the kernel's shared module.

#ifndef EXPORTEDBYVOZAPINEW_H
#define EXPORTEDBYVOZAPINEW_H

#if defined(_WIN32)
#if defined(VOZAPINew_BUILDING)
#define ExportedByVOZAPINew __declspec(dllexport)
#else
#define ExportedByVOZAPINew __declspec(dllimport)
#endif
#else
#define ExportedByVOZAPINew __attribute__((visibility("default")))
#endif

#endif
