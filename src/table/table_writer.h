// Writer of table files in the toolkit's own format.
#pragma once

// Writes the font with that ID to the file; false after reporting.
bool WriteTableFile(long id, const char* name);
