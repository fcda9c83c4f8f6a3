// MAT-files that the system cannot read to their end.
#include <cstdlib>
#include <functional>

#include "platform/matlab/matfile.h"
#include "platform/matlab/processes.h"
#include "platform/matlab/samplefiles.h"
#include "testpaths.h"

namespace {

class MatReadFaults : public CCleanTest {
protected:
    ~MatReadFaults() override { unsetenv("TESK_TEST_FAILING_READ"); }
};

using FAnswer = std::function<std::string(CMatFile &file)>;

// What is made of a file by a reader whose Nth read fails.
std::string AnswerAt(int failing, const std::string &name, const FAnswer &answer)
{
    setenv("TESK_TEST_FAILING_READ", std::to_string(failing).c_str(), 1);
    CMatFile file(TESK_FAULTY_MATREAD, SamplePath(name));
    const std::string text = answer(file);
    return file.Fault().empty() ? text : text + file.Fault();
}

// Has one read in seven fail. There is the whole answer or none, and the fault is told.
void ExpectAllOrNothing(const std::string &name, const std::string &nothing, const FAnswer &answer)
{
    constexpr int Never = 1000000, Step = 7;
    const std::string all = AnswerAt(Never, name, answer);
    const std::string fault = nothing + TESK_FAULTY_MATREAD " could not read the file: Input/output error";
    ASSERT_NE(all, nothing);
    int faults = 0;
    std::string text = AnswerAt(1, name, answer);
    for (int failing = 1; text != all; text = AnswerAt(failing, name, answer)) {
        ASSERT_EQ(text, fault) << name << ", read " << failing;
        failing += Step;
        ++faults;
    }
    EXPECT_GE(faults, 2) << name;
}

constexpr const char *OneOfEachVersion[] = {"octave4.mat", "octave6.mat", "matio73.mat"};

TEST_F(MatReadFaults, AreNoFileOfAnotherKind)
{
    for (const char *name : OneOfEachVersion)
        ExpectAllOrNothing(name, "no file", [](CMatFile &file) { return file.Check() ? "file" : "no file"; });
}

TEST_F(MatReadFaults, AreNoShorterList)
{
    const auto list = [](CMatFile &file) {
        const std::vector<std::string> *names = file.ReadNames();
        return names != nullptr ? std::to_string(names->size()) + " variables" : "";
    };
    for (const char *name : OneOfEachVersion)
        ExpectAllOrNothing(name, "", list);
}

TEST_F(MatReadFaults, AreNoMissingVariable)
{
    for (const char *name : OneOfEachVersion)
        ExpectAllOrNothing(name, "null", [](CMatFile &file) { return Describe(file.ReadVariable("values")); });
}

}  // namespace
