#pragma once

// Put before every device path. Empty on a device; a host build points it at a directory that plays
// the device's file system, so that nobody needs root. A relative root is taken from the working
// directory.
#ifndef KO_DEVICE_ROOT
#define KO_DEVICE_ROOT ""
#endif

// The page file, on the console's side and on the service's.
constexpr char kSharePageFile[] = KO_DEVICE_ROOT "/data/vendor/.tv";
