// ExportedByVOZPlatform.h: marks what leaves the platform's shared module.

#ifndef EXPORTEDBYVOZPLATFORM_H
#define EXPORTEDBYVOZPLATFORM_H

#if defined(_WIN32)
#if defined(VOZPlatform_BUILDING)
#define ExportedByVOZPlatform __declspec(dllexport)
#else
#define ExportedByVOZPlatform __declspec(dllimport)
#endif
#else
#define ExportedByVOZPlatform __attribute__((visibility("default")))
#endif

#endif
