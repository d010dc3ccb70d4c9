// The end of a process in which scripts have run.
#include "tests/engines/PythonTest.h"

namespace {

class PythonEndTest : public enginetest::PythonTest
{
protected:
    /// Loads `content` and ends the process as a host does; the host itself is gone by then.
    void loadAndEnd(const std::string& content)
    {
        load(write("script.py", content));
        running.reset();
        std::exit(0);
    }
};

TEST_F(PythonEndTest, ExitFunctionsRunAndWhatWasWrittenIsOnTheDisk)
{
    EXPECT_EXIT(loadAndEnd("import atexit, os\n"
                           "file = open(os.path.join(os.path.dirname(__file__), 'kept.txt'), 'w')\n"
                           "file.write('not yet on the disk')\n"
                           "atexit.register(lambda: print('the exit function ran'))\n"),
                testing::ExitedWithCode(0), "^the exit function ran\n$");
    EXPECT_EQ(standalonetest::fileContent(folder / "kept.txt"), "not yet on the disk");
}

TEST_F(PythonEndTest, AThreadThatNeverEndsDoesNotHoldTheProcess)
{
    EXPECT_EXIT(loadAndEnd("import threading\n"
                           "def work():\n"
                           "    print('working')\n"
                           "    while True: sum(range(1000))\n"
                           "threading.Thread(target=work).start()\n"),
                testing::ExitedWithCode(0), "");
}

TEST_F(PythonEndTest, AnExitFunctionThatFailsHarmsNothing)
{
    EXPECT_EXIT(loadAndEnd("import atexit\natexit.register(lambda: 1 / 0)\n"), testing::ExitedWithCode(0),
                "ZeroDivisionError: division by zero");
}

} // namespace
