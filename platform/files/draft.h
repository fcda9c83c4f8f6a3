// A file that is written whole or not at all.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "platform/files/filebuffer.h"

namespace tesk {

/// The file that is filled beside the place of another one until it is complete and moved there. What every writer of a
/// file uses, the tool's and the library's: fill `Stream`, then `Publish`. What was not published goes with the object, at
/// the end of the program, or through `RemoveDrafts`. Its name begins as that of the place and ends in ".part" and digits
/// that nobody can guess; no file of that name is ever opened, only made, so that neither a link laid there nor another
/// writer on the same place comes between. Each of several writers on a place publishes a file of its own, whole.
///
/// Nothing here throws, except for want of memory.
class CDraft {
public:
    /// Makes the draft. It has the access rights of the file that it will replace, else those that the process gives a new
    /// file.
    /// @param path  the place; a symbolic link stays one, and the place is where it leads, which need not be there
    explicit CDraft(const std::string &path);
    CDraft(const CDraft &) = delete;
    CDraft &operator=(const CDraft &) = delete;
    ~CDraft();

    /// @return false if it could not be made, or once it was published or given up
    bool IsOpen() const;
    /// What went wrong first, as an `errno`; 0 if nothing did.
    int Error() const;
    /// Where to write; seeking and telling work too. A failure shows in the stream's state and in `Error`.
    std::ostream &Stream();
    /// Writes out what is left and moves the draft to its place. @return false if any step failed: then it is gone, and what
    /// was in its place is as before
    bool Publish();

private:
    void Make(const std::string &place);
    void GiveUp();

    std::unique_ptr<CFileBuffer> m_buffer;
    std::ostream m_stream;
    std::string m_name;   // of the place, in its folder
    std::string m_draft;  // of the draft
    CFile m_folder;
    int m_slot = -1;  // in the list of drafts
    int m_error = 0;
};

/// Removes every draft of this process that is not published. It may be called in a handler of a signal, which is what it is
/// for; up to 64 drafts at a time are known to it.
void RemoveDrafts();

}  // namespace tesk
