# The tests that run on Windows: of the module and its contexts there, and those of the effect's classes that say that they
# give the same numbers.

file(GLOB_RECURSE windows_test_sources CONFIGURE_DEPENDS "Windows/*.cpp" "Unit/Evaluate/*.cpp" "Unit/RenderGrid/*.cpp"
     "Module/*.cpp" "Unit/Script/*.cpp" "Unit/Parameter/*.cpp" "Unit/Editors/*.cpp" "Unit/*Test.cpp" "Support/*.cpp")
# What needs cairo, the interpreter of dialogs, or what Linux says of a process.
list(FILTER windows_test_sources EXCLUDE REGEX "/Module/(Limits|SetUp|Dialogs|Panel[A-Za-z]*Pictures|PanelUser)Test\\.cpp$")
list(FILTER windows_test_sources EXCLUDE REGEX "/Tests/Unit/(Host|Gl|Shell|Support)/")
list(FILTER windows_test_sources EXCLUDE REGEX "/(Support/(ApplicationContext|CommandFixture|ImageComparison|Examples)|Unit/TextureAtlasTest)")
# The memory of a frame is counted by what the C library of Linux says of its blocks.
list(FILTER windows_test_sources EXCLUDE REGEX "/(HeapUse|FrameMemoryTest)\\.cpp$")
add_executable(TessavoyWindowsTests ${windows_test_sources})
add_dependencies(TessavoyWindowsTests Tessavoy)
target_link_libraries(TessavoyWindowsTests PRIVATE TessavoyEffect TessavoyHost GTest::gtest GTest::gmock GTest::gtest_main)
# Each contexts' test loads the module anew, which it can only while no other test keeps it.
add_test(NAME WindowsContexts COMMAND TessavoyWindowsTests --gtest_filter=WglContext*)
add_test(NAME WindowsDeaths COMMAND TessavoyWindowsTests --gtest_filter=*DeathTest*)
add_test(NAME WindowsClassesAndModule COMMAND TessavoyWindowsTests --gtest_filter=-WglContext*:*DeathTest*)
set_tests_properties(WindowsContexts WindowsDeaths WindowsClassesAndModule PROPERTIES TIMEOUT 600)
target_compile_definitions(TessavoyWindowsTests PRIVATE "TESSAVOY_MODULE=\"$<TARGET_FILE:Tessavoy>\"")
