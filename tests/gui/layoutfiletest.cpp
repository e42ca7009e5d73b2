// Layout files: what they say, where they are wrong, and those of the module.

#include "gui/layoutfile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

using namespace vx3::gui;

namespace {

std::string ErrorOf(const std::string& text)
{
    LayoutNode root;
    root.text = 77;
    std::string error;
    if (ParseLayout(text, 7, root, error))
        return "";
    EXPECT_EQ(root.text, 77) << "a file that is wrong leaves the node as it was";
    return error;
}

TEST(LayoutFile, SaysShapesRangesWeightsAndNumbersOfTexts)
{
    LayoutNode root;
    std::string error;
    const char* text = "\n# head\r\ndialog 7 columns=3 {\n splitter 8 dir=v weights=60:40.5 fit=vh{tree 9;area # no number\n ;}"
                       "slider 10 min=-5 max=2.5 step=.5 percent left tip=10041 minwidth=20 minheight=3}";
    ASSERT_TRUE(ParseLayout(text, 7, root, error)) << error;
    EXPECT_EQ(root.shape.columns, 3);
    EXPECT_EQ(root.shape.flags, uint32_t(VX3_FLAG_FIT_H | VX3_FLAG_FIT_V | VX3_FLAG_SCALE_H | VX3_FLAG_SCALE_V));
    ASSERT_EQ(root.children.size(), 2u);
    const LayoutNode& splitter = root.children[0];
    EXPECT_EQ(splitter.shape.kind, VX3_GADGET_SPLITTER);
    EXPECT_EQ(splitter.shape.columns, 1);
    EXPECT_EQ(splitter.shape.flags, uint32_t(VX3_FLAG_FIT_H | VX3_FLAG_FIT_V));
    EXPECT_EQ(splitter.weights, (std::vector<double>{ 60, 40.5 }));
    EXPECT_EQ(splitter.children[1].shape.id, 0);
    const LayoutNode& slider = root.children[1];
    EXPECT_EQ(slider.shape.flags, uint32_t(VX3_FLAG_PERCENT | VX3_FLAG_LEFT));
    EXPECT_EQ(slider.shape.minWidth, 20);
    EXPECT_EQ(slider.shape.minHeight, 3);
    EXPECT_EQ(slider.tip, 10041);
    EXPECT_EQ(std::vector<double>({ slider.least, slider.most, slider.step }), std::vector<double>({ -5, 2.5, .5 }));
}

TEST(LayoutFile, TellsWhereItIsWrong)
{
    const struct {
        const char* text;
        const char* error;
    } cases[] = {
        { "", "1:1: a layout begins with 'dialog 7'" },
        { "group 7 { }", "1:1: a layout begins with 'dialog 7'" },
        { "dialog 8 { }", "1:1: the dialog of this file must have the number 7" },
        { "dialog 7 { } dialog 8 { }", "1:14: nothing may stand behind the dialog" },
        { "dialog 7 {\n  dialog 8 { }\n}", "2:3: 'dialog' is no kind of gadget" },
        { "dialog 7 {\n  lever 8;\n}", "2:3: 'lever' is no kind of gadget" },
        { "dialog 7 { text 8; text 8; }", "1:25: the number 8 is there twice" },
        { "dialog 7 { text 7; }", "1:17: the number 7 is there twice" },
        { "dialog 7 { text 0; text 0; text; text }", "" },
        { "dialog 7 { text -8; }", "1:17: '-8' is not between 0 and 2147483647" },
        { "dialog 7 { text 99999999999; }", "1:17: '99999999999' is not a whole number" },
        { "dialog 7 {\n group 8 {\n text 9;\n", "2:2: the brace of this group is never closed" },
        { "dialog 7 { group 8; }", "1:19: 'group' needs its children in braces" },
        { "dialog 7 { text 8 { } }", "1:19: only groups have children" },
        { "dialog 7 { text 8 text 9; }", "1:19: 'text' is neither an attribute with '=' nor a word; is a ';' missing?" },
        { "dialog 7 { text 8", "1:18: a ';' is missing" },
        { "dialog 7 { text 8 colour=3; }", "1:19: 'colour' is no attribute" },
        { "dialog 7 { text 8 step=3; }", "1:19: text has no 'step'" },
        { "dialog 7 { text 8 percent; }", "1:19: text cannot be 'percent'" },
        { "dialog 7 { text 8 left left; }", "1:24: 'left' is there twice" },
        { "dialog 7 { text 8 left right; }", "1:12: left and right exclude each other" },
        { "dialog 7 { text 8 fit=hh; }", "1:23: 'hh' is none of h, v, hv" },
        { "dialog 7 { text 8 fit=; }", "1:23: ';' is none of h, v, hv" },
        { "dialog 7 dir=x { }", "1:14: 'x' is neither h nor v" },
        { "dialog 7 columns=0 { }", "1:18: '0' is not between 1 and 1000" },
        { "dialog 7 { text 8 minwidth=10001; }", "1:28: '10001' is not between 0 and 10000" },
        { "dialog 7 { slider 8 min=5 max=4; }", "1:12: min is more than max" },
        { "dialog 7 { slider 8 step=0; }", "1:26: a step must be more than 0" },
        { "dialog 7 { slider 8 max=inf; }", "1:25: 'inf' is not a number" },
        { "dialog 7 { slider 8 max=1e999; }", "1:25: '1e999' is not a number" },
        { "dialog 7 { splitter weights=1:0 { text; text } }", "1:31: a weight must be more than 0" },
        { "dialog 7 { splitter weights=1: { text; text } }", "1:31: '' is not a number" },
        { "dialog 7 { splitter weights=1:2 { text } }", "1:12: a splitter needs a weight for each child" },
        { "dialog 7 { scroll { text; text } }", "1:12: a scroll group has one child" },
    };
    for (const auto& row : cases)
        EXPECT_EQ(ErrorOf(row.text), row.error) << row.text;
}

TEST(LayoutFile, RefusesWhatIsTooLargeOrTooDeep)
{
    std::string deep = "dialog 7 {";
    for (int i = 0; i < 100000 / 8; ++i)
        deep += "group {";
    EXPECT_NE(ErrorOf(deep).find("more than 32 groups inside each other"), std::string::npos);
    std::string many = "dialog 7 {";
    for (int i = 0; i < 5000; ++i)
        many += "text;";
    EXPECT_NE(ErrorOf(many + "}").find("more than 4000 gadgets"), std::string::npos);
    EXPECT_NE(ErrorOf("dialog 7 { }" + std::string(300000, ' ')).find("larger than"), std::string::npos);
    std::string error = ErrorOf("dialog 7 { " + std::string(100000, 'x') + " }");
    EXPECT_LT(error.size(), 100u) << "what cannot be read is not shown in full";
}

// Whatever bytes it holds, a file is read or refused with a place.
TEST(LayoutFile, SurvivesEveryChangeOfOneByte)
{
    const std::string whole = "dialog 7 { splitter 8 weights=1:2 { text 9 fit=h; slider 10 min=1 max=5 step=2 } } # end\n";
    int refused = 0;
    for (size_t at = 0; at < whole.size(); ++at)
        for (char byte : { '\0', '{', '}', ';', '=', '#', ':', '9', 'h', '\xff', '\n' }) {
            std::string changed = whole;
            changed[at] = byte;
            const std::string error = ErrorOf(changed);
            refused += error.empty() ? 0 : 1;
            EXPECT_TRUE(error.empty() || std::isdigit(static_cast<unsigned char>(error[0]))) << changed;
        }
    EXPECT_GT(refused, 300);
}

TEST(LayoutFile, AFileThatCannotBeReadSaysSo)
{
    LayoutNode root;
    std::string error;
    EXPECT_FALSE(LoadLayoutFile("/nowhere/7.layout", 7, root, error));
    EXPECT_EQ(error, "/nowhere/7.layout: cannot be read");
    EXPECT_FALSE(LoadLayoutFile("/", 7, root, error));
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "vx3-layoutfiletest.layout";
    std::ofstream(file) << "dialog 7 {\n";
    EXPECT_FALSE(LoadLayoutFile(file, 7, root, error));
    EXPECT_EQ(error, file.string() + ":1:1: the brace of this dialog is never closed");
    std::filesystem::remove(file);
}

TEST(LayoutFile, ThoseOfTheModuleAreRightAndTheirTextsAreThere)
{
    std::string texts;
    std::ifstream stream(MODULE_RESOURCES "/strings/us.txt");
    std::getline(stream, texts, '\0');
    int found = 0;
    for (const auto& entry : std::filesystem::directory_iterator(MODULE_RESOURCES "/layouts")) {
        if (entry.path().extension() != ".layout")
            continue;
        LayoutNode root;
        std::string error;
        ++found;
        ASSERT_TRUE(LoadLayoutFile(entry.path(), std::stoi(entry.path().stem()), root, error)) << error;
        const std::function<void(const LayoutNode&)> check = [&](const LayoutNode& node) {
            for (int32_t number : { node.text, node.tip })
                EXPECT_TRUE(number == 0 || texts.find("\n" + std::to_string(number) + " =") != std::string::npos) << number;
            for (const LayoutNode& child : node.children)
                check(child);
        };
        check(root);
    }
    EXPECT_GE(found, 2);
}

} // namespace
