// What a form of another tool has no place for.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tesk {

/// Keeps what cannot be said, each thing once for a signal; without a name it is of the whole bench. Either nothing may be lost, or what is written instead is told.
class CLosses {
public:
    /// @param form  its name, for the messages
    CLosses(std::string form, bool mayWeaken) : m_form(std::move(form)), m_mayWeaken(mayWeaken) {}

    /// A value that becomes another one.
    /// @param thing    such as "U"
    /// @param time     when it stands first, such as "10ns"; empty where it has no time
    /// @param instead  what is written for it, such as "x"
    void Weaken(const std::string &signal, const std::string &thing, const std::string &time,
                const std::string &instead);

    /// Something for which there is nothing to be written instead, with advice.
    void Refuse(const std::string &signal, const std::string &why);

    /// A fault of the bench, told as it stands.
    void Fault(const std::string &line);

    /// Something to know that changes no value.
    void Note(const std::string &signal, const std::string &what);

    /// Tells all of it on standard error. @throw CRefusal if something must not be lost
    void Tell() const;

private:
    void Add(bool isError, const std::string &line);

    std::string m_form;
    bool m_mayWeaken;
    bool m_hasError = false;
    bool m_couldWeaken = false;
    std::set<std::pair<std::string, std::string>> m_known;  // signals and things
    std::vector<std::string> m_lines;
};

}  // namespace tesk
