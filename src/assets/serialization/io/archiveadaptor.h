#pragma once

// The adaptors between the two families of input and output: archives inside the library, streams
// at its interface. A stream archive is an archive over a stream of the host; an archive stream is
// a stream over an archive.
#include "assets/serialization/io/archivestream.h"
#include "assets/serialization/io/streamarchive.h"
