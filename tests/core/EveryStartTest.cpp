// A start, disturbed at every single point: the program is killed before each write; each write, each flush
// and each read fails once; the power fails. Checks what that start shows and what the next one finds.
#include <gtest/gtest.h>

#include "tests/core/EveryPoint.h"

namespace {

using Desk = std::vector<NoteRecord>;

/// Checks the notes of a start; `refused`: something failed in it.
using StartCheck = std::function<void(const Desk& found, bool refused)>;

/// A start, and what it must find.
struct Start {
    std::function<void(Stores&)> seed;
    bool deleteLeftOver;  ///< the answer about left-over files
    StartCheck check;
};

void seed(Stores& stores, const Start& start) {
    start.seed(stores);
    stores.folder.flushAll();
}

void endedAnywhere(const Start& start) {
    Stores stores;
    seed(stores, start);
    const std::vector<Image> points =
        everyPoint(stores, [&] { const Program program(stores, start.deleteLeftOver); });
    for (std::size_t at = 0; at < points.size(); ++at) {
        SCOPED_TRACE("ended ahead of change " + std::to_string(at));
        start.check(foundIn(points[at], start.deleteLeftOver), false);
        ++tally.killed;
    }
}

void cutAnywhere(const Start& start) {
    Stores stores;
    seed(stores, start);
    const std::vector<Image> images =
        everyPowerCut(stores, [&] { const Program program(stores, start.deleteLeftOver); });
    for (std::size_t at = 0; at < images.size(); ++at) {
        SCOPED_TRACE("image " + std::to_string(at) + " after a power cut");
        start.check(foundIn(images[at], start.deleteLeftOver), false);
        ++tally.powerCuts;
    }
}

void failedAnywhere(const Start& start, const Failing& failing) {
    for (int number = 0;; ++number) {
        SCOPED_TRACE(std::string(failing.name) + " " + std::to_string(number) + " failed");
        Stores stores;
        seed(stores, start);
        failing.fail(stores, number);
        Program program(stores, start.deleteLeftOver);
        if (program.state.usable) {
            program.readAgain();
            start.check(storeFree(program.notes), true);
        } else {
            EXPECT_EQ(program.told, 1);
        }
        const bool reached = failing.end(stores);
        start.check(foundIn(stores.image(), start.deleteLeftOver), false);
        if (!reached) break;
        ++(tally.*failing.tried);
    }
}

/// Disturbs a start in every possible way.
void disturbedAnywhere(const Start& start) {
    endedAnywhere(start);
    cutAnywhere(start);
    for (const Failing& failing : {kFailingWrite, kFailingFlush, kFailingRead})
        failedAnywhere(start, failing);
}

/// The same for many notes, where trying every read would take too long.
void writesDisturbed(const Start& start) {
    endedAnywhere(start);
    failedAnywhere(start, kFailingWrite);
}

TEST(EveryStart, TheFirstEverMakesOneNote) {
    disturbedAnywhere({[](Stores&) {}, false,
                       [](const Desk& found, bool) {
                           ASSERT_EQ(found.size(), 1U);
                           EXPECT_EQ(found[0].Titolo + found[0].Nota, u"");
                       }});
}

TEST(EveryStart, TheImportNeitherLosesNorDoublesANote) {
    for (const bool ownNote : {false, true}) {
        for (const int count : {1, 3, ownNote ? kMaxNotes - 1 : kMaxNotes}) {
            const Desk all = sampleNotes(count);
            NoteRecord own = sampleNotes(1).front();
            own.Titolo = u"my own";
            own.Nota = u"with a body";
            Desk wanted = storeFree(all);
            if (ownNote) wanted.insert(wanted.begin(), own);
            const auto seed = [&](Stores& stores) {
                if (ownNote) stores.seedFiles({own});
                stores.seedRegistry(all);
            };
            const auto check = [&](const Desk& found, bool refused) {
                // If the copy was refused, the desk of that run has the registry's notes.
                EXPECT_TRUE(found == wanted || (refused && found == storeFree(all)))
                    << testing::PrintToString(found);
            };
            (count > 3 ? writesDisturbed : disturbedAnywhere)({seed, false, check});
        }
    }
}

TEST(EveryStart, LeftOverFilesAreDeletedOrStayComplete) {
    for (const bool deleteThem : {false, true}) {
        const Desk inFiles = sampleNotes(3);
        Desk inRegistry = sampleNotes(5);
        inRegistry.erase(inRegistry.begin(), inRegistry.begin() + 3);
        const auto seed = [&](Stores& stores) {
            stores.seed(false, inFiles);
            stores.seedRegistry(inRegistry);
            stores.registry.put(u"setting", u"UseRegistry", u"True");
        };
        disturbedAnywhere({seed, deleteThem, [&](const Desk& found, bool) {
                               EXPECT_EQ(found, storeFree(deleteThem ? inRegistry : inFiles));
                           }});
    }
}

TEST(EveryStart, AnAnswerAboutLeftOverFilesMayBeFollowedByTheOther) {
    for (const int count : {1, 3}) {
        for (const bool first : {true, false}) {
            SCOPED_TRACE(std::to_string(count) + (first ? " notes, yes and no" : " notes, no and yes"));
            const Desk all = sampleNotes(count);
            // There and back in one run: both stores hold every note, and the files count as copied.
            Stores stores;
            stores.seed(true, all);
            Program program(stores);
            ASSERT_TRUE(program.switchTo(StoreKind::Files) && program.switchTo(StoreKind::Registry));
            const Image both = stores.image();
            for (const Image& point : everyPoint(stores, [&] { const Program killed(stores, first); })) {
                EXPECT_EQ(foundIn(point, !first), storeFree(all));
                ++tally.killed;
            }
            for (int number = 0;; ++number) {
                SCOPED_TRACE("write " + std::to_string(number) + " refused");
                Stores refusing(both);
                kFailingWrite.fail(refusing, number);
                const Program refused(refusing, first);
                const bool reached = kFailingWrite.end(refusing);
                EXPECT_EQ(foundIn(refusing.image(), !first), storeFree(all));
                if (!reached) break;
                ++tally.failed;
            }
        }
    }
}

/// Files of an older release.
void seedOlder(Stores& stores, const Desk& notes, float version, std::size_t recordLength) {
    stores.seed(false, notes);
    std::string& dat = stores.folder.content[Text(kNoteFile)];
    std::string old;
    for (std::size_t at = 0; at < dat.size(); at += kRecordLength)
        old += dat.substr(at, recordLength);
    dat = old;
    stores.folder.content[Text(kHeaderFile)] =
        encodeHeader({static_cast<std::int32_t>(notes.size()), 0, version});
}

/// Both stores where `run` was killed half-way.
Image killedHalfWay(Stores& stores, const std::function<void()>& run) {
    const std::vector<Image> points = everyPoint(stores, run);
    return points[points.size() / 2];
}

std::function<void(Stores&)> leave(const Image& image) {
    return [&image](Stores& stores) {
        stores.folder.content = image.files;
        stores.registry.content = image.settings;
    };
}

TEST(EveryStart, TheUpgradeOfEveryOlderLayoutKeepsEveryNote) {
    constexpr std::pair<float, std::size_t> kLayouts[] = {{1.2F, 195}, {1.21F, 197}, {1.22F, 201}};
    for (const auto& layout : kLayouts) {
        Desk plain = sampleNotes(4);
        for (NoteRecord& note : plain)
            note.weekdays = {};
        const auto seed = [&](Stores& into) { seedOlder(into, plain, layout.first, layout.second); };
        const auto check = [&](const Desk& found, bool) { EXPECT_EQ(found, storeFree(plain)); };
        disturbedAnywhere({seed, false, check});
        // Again with records that are still old ones although the header already says otherwise.
        Stores stores;
        seed(stores);
        std::vector<Image> points = everyPoint(stores, [&] { const Program program(stores); });
        std::erase_if(points, [](const Image& image) {
            DataHeader header;
            decodeHeader(image.files.at(Text(kHeaderFile)), header);
            return header.version < kProgramVersion ||
                   image.files.at(Text(kNoteFile)).size() % kRecordLength == 0;
        });
        ASSERT_FALSE(points.empty());
        disturbedAnywhere({leave(points.front()), false, check});
    }
}

TEST(EveryStart, FilesWithoutTheirHeaderAreCounted) {
    const Desk all = sampleNotes(4);
    for (const std::string& header :
         {std::string(), std::string("damaged"), std::string(kHeaderLength, '\0')}) {
        const auto seed = [&](Stores& stores) {
            stores.seed(false, all);
            stores.folder.content.erase(Text(kHeaderFile));
            if (!header.empty()) stores.folder.content[Text(kHeaderFile)] = header;
        };
        disturbedAnywhere({seed, false, [&](const Desk& found, bool) { EXPECT_EQ(found, storeFree(all)); }});
    }
}

TEST(EveryStart, ADeletionThatWasKilledHalfWayIsFinished) {
    const Desk all = sampleNotes(4);
    Desk wanted = storeFree(all);
    wanted.erase(wanted.begin());
    Stores stores;
    stores.seed(true, all);
    Program program(stores);
    const Image killed = killedHalfWay(stores, [&] { program.remove(1); });
    ASSERT_NE(Stores(killed).registry.text(u"setting", u"places"), u"(none)");
    disturbedAnywhere({leave(killed), false, [&](const Desk& found, bool) { EXPECT_EQ(found, wanted); }});
}

TEST(EveryStart, DraftsOfAKilledProgramAreUsed) {
    for (const bool useRegistry : {false, true}) {
        const Desk all = sampleNotes(3);
        Desk wanted = storeFree(all);
        wanted[0].Nota = u"typed";
        wanted[2].Nota = u"typed, too";
        const auto seed = [&](Stores& stores) {
            stores.seed(useRegistry, all);
            Program program(stores);
            program.type(1, wanted[0].Nota);
            program.type(3, wanted[2].Nota);
        };
        disturbedAnywhere({seed, false, [&](const Desk& found, bool refused) {
                               // Drafts that cannot be read now are left for the next start.
                               EXPECT_TRUE(found == wanted || (refused && found == storeFree(all)))
                                   << testing::PrintToString(found);
                           }});
    }
}

}  // namespace
