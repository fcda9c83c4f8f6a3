// MAT-files of version 7.3, which are HDF5 files.
#pragma once

/// Whether a file is one of version 7.3, or any other HDF5 file.
bool IsHdfFile(const char *path);

/// Writes the node of a variable; that of nothing if there is none of the name. Objects that other files hold, by links or
/// external storage, are not there.
void PutHdfVariable(const char *path, const char *name);

/// Writes the list of all variables.
void PutHdfList(const char *path);

/// Goes through all variables without their values, so that a file whose table of contents is damaged is found out.
void PassHdfVariables(const char *path);
