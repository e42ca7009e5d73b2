// The command line of the studio.
#include <gtest/gtest.h>

#include "desktop/studiooptions.h"

namespace {

using namespace vx3::desktop;
using Words = std::vector<std::string>;

TEST(StudioOptions, AreRead)
{
    StudioOptions options;
    EXPECT_EQ(ParseOptions({ "--profile", "/tmp/p", "--lang=de", "--module", "m.so", "--shot=a b.png", "--size", "1280x800", "--scale",
                             "1.5", "--dark", "folder" },
                           options),
              "");
    EXPECT_EQ(options.profile, "/tmp/p");
    EXPECT_EQ(options.language, "de");
    EXPECT_EQ(options.module, "m.so");
    EXPECT_EQ(options.shot, "a b.png");
    EXPECT_EQ(options.size, QSize(1280, 800));
    EXPECT_EQ(options.scale, 1.5);
    EXPECT_EQ(options.brightness, Brightness::Dark);
    EXPECT_EQ(options.place, "folder");
}

TEST(StudioOptions, KeepTheBytesOfNames)
{
    for (const char* name : { "b\x80\xff.png", "ü.png", "--", "-x y" }) {
        StudioOptions options;
        EXPECT_EQ(ParseOptions({ "--", name }, options), "");
        EXPECT_EQ(options.place, name);
    }
}

TEST(StudioOptions, ThatAreWrongAreSaidToBe)
{
    struct Row {
        Words words;
        const char* said;
    };
    const Row rows[] = {
        { { "--foo" }, "foo" },
        { { "--scale", "0" }, "--scale is a number from 0.5 to 4" },
        { { "--scale", "big" }, "--scale is a number from 0.5 to 4" },
        { { "--shot", "a.png", "--size", "10x10" }, "--size is a width and a height" },
        { { "--shot", "a.png", "--size", "800" }, "--size is a width and a height" },
        { { "--size", "800x600" }, "--size goes with --shot" },
        { { "--dark", "--light" }, "exclude each other" },
        { { "--shot", "a.png", "--script", "b" }, "exclude each other" },
        { { "--lang", "fr" }, "--lang is us or de" },
        { { "--profile" }, "profile" },
        { { "--profile", "" }, "--profile needs a value" },
        { { "a", "b" }, "one place is enough" },
        { { "" }, "must not be empty" },
        { { "--script", "a", "place" }, "opens its places by itself" },
        { { "--folder", "a" }, "--folder goes with --script" },
    };
    for (const Row& row : rows) {
        StudioOptions options;
        const std::string error = ParseOptions(row.words, options);
        EXPECT_NE(error.find(row.said), std::string::npos) << row.words.front() << ": " << error;
    }
}

TEST(StudioOptions, PlacesAreUrlsOrPaths)
{
    for (const char* url : { "file:/", "file://localhost/tmp", "preset:/a" })
        EXPECT_TRUE(IsUrl(url)) << url;
    for (const char* path : { "/tmp/file:/a", "a:b", "./file:/a", "folder" })
        EXPECT_FALSE(IsUrl(path)) << path;
    EXPECT_EQ(AbsolutePath("/a/./b/../c/"), "/a/c");
    EXPECT_EQ(AbsolutePath("/"), "/");
}

} // namespace
