// Getting a file onto the disk.
#pragma once

// Returns when what was written to the file will survive a loss of power. False, with the reason in errno,
// when it could not be written.
bool flush_to_disk(int descriptor);
