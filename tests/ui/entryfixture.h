// Lists of entries written as text: a letter for each node, a capital for a selected one,
// a point for an entry without a node.
#pragma once

#include <array>
#include <cctype>
#include <string>

#include "support/modulefixture.h"

#include "ui/entryselection.h"

namespace vx3::tests {

class LetterNode : public browser::RTreeNode
{
public:
    explicit LetterNode(int newKey)
        : key(newKey)
    {
    }
    int key; // what a comparison looks at
};

class EntryTest : public ModuleTest
{
protected:
    EntryTest()
    {
        for (size_t i = 0; i < letters.size(); i++)
            letters[i] = browser::NodeRef(browser::Make<LetterNode>()(static_cast<int>(i)));
    }

    browser::NodeRef& Node(char letter) { return letters[static_cast<size_t>(std::tolower(letter) - 'a')]; }
    int& KeyOf(char letter) { return static_cast<LetterNode*>(Node(letter).Get())->key; }

    void Fill(browser::Entries& entries, const std::string& text)
    {
        for (char letter : text) {
            browser::ContentViewEntry entry;
            if (letter != '.')
                entry.node = Node(letter);
            entry.flags = std::isupper(letter) ? browser::EntryFlag::selected : 0;
            EXPECT_TRUE(entries.Append(std::move(entry)));
        }
    }

    void Fill(browser::EntrySelection& selection, const std::string& text)
    {
        browser::Entries entries;
        Fill(entries, text);
        selection.Install(entries, 0);
    }

    char LetterOf(const browser::ContentViewEntry& entry)
    {
        for (char letter = 'a'; letter <= 'z'; letter++)
            if (entry.node && entry.node == Node(letter))
                return static_cast<char>(entry.IsSelected() ? std::toupper(letter) : letter);
        return '.';
    }

    std::string TextOf(const browser::Entries& entries)
    {
        std::string text;
        for (const browser::ContentViewEntry& entry : entries)
            text += LetterOf(entry);
        return text;
    }

    // For example "aBc anchor 1 focus 1 bounds 1 1"; what is counted must be true.
    std::string Describe(const browser::EntrySelection& selection)
    {
        int32_t selected = 0;
        for (const browser::ContentViewEntry& entry : selection.All())
            selected += entry.IsSelected();
        EXPECT_EQ(selection.SelectedCount(), selected);
        return TextOf(selection.All()) + " anchor " + std::to_string(selection.Anchor()) + " focus " + std::to_string(selection.Focus())
            + " bounds " + std::to_string(selection.FirstSelected()) + " " + std::to_string(selection.LastSelected());
    }

private:
    std::array<browser::NodeRef, 26> letters;
};

} // namespace vx3::tests
