// Where a command writes.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

/// The file that is filled next to the place of another one, until it is complete and moved there. What has not been
/// moved goes with the object, or when a signal ends the tool. There is one at a time.
class CDraft {
public:
    /// @param path  a symbolic link stays one: the place is where it leads. @throw CRefusal if it leads nowhere
    explicit CDraft(const std::string &path);
    CDraft(const CDraft &) = delete;
    ~CDraft();

    const std::string &Place() const { return m_place; }
    /// ".part" and the process id behind the place.
    const std::string &Path() const { return m_path; }
    /// To be called once the draft is there: it gets the access rights of the file that it will replace.
    void TakeMode() const;

private:
    std::string m_place;
    std::string m_path;
};

/// Lets `write` fill a file, or standard output if `path` is empty. A file is written whole or not at all, as a draft.
/// @throw CRefusal if it cannot be written
void WriteOutput(const std::string &path, const std::function<void(std::ostream &)> &write);

/// Writes lines with their fields below one another. @param numbers  the column that stands to the right
void WriteColumns(std::ostream &out, const std::vector<std::vector<std::string>> &lines, std::size_t numbers);

/// Whether standard output is a terminal.
bool IsTerminal();

/// Whether standard error is one.
bool IsErrorTerminal();

/// Columns of the terminal, 80 where there is none.
int TerminalWidth();
