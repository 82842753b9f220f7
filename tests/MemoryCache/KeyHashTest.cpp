// SPDX-License-Identifier: MIT
#include <KXFoundation/MemoryCache/KeyHash.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtTest/QTest>

#include <algorithm>
#include <string>
#include <vector>

namespace {

constexpr std::size_t seed = 12345;

} // namespace

class KeyHashTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    // Wherever the text stands in memory: a hash must not read beyond it.
    void isTheSameForEqualTexts()
    {
        const QString text = QStringLiteral("0123456789 größer 🎬 0123456789");
        for (qsizetype length = 0; length <= text.size(); ++length) {
            const QString whole = text.left(length);
            const quint32 hash = kx::keyhash::hash(whole, seed);
            for (qsizetype offset = 0; offset < 5; ++offset) {
                const std::vector<char16_t> exact = [&] {
                    std::vector<char16_t> units(std::size_t(offset + length), u'?');
                    std::copy_n(whole.utf16(), length, units.begin() + offset);
                    return units;
                }();
                const auto *at = reinterpret_cast<const QChar *>(exact.data() + offset);
                QCOMPARE(kx::keyhash::hash(QString::fromRawData(at, length), seed), hash);
            }
        }
    }

    void differsWhereverTextsDiffer()
    {
        for (qsizetype length = 1; length <= 40; ++length) {
            const QString text(length, u'a');
            QSet<quint32> hashes{kx::keyhash::hash(text, seed), kx::keyhash::hash(QString(length - 1, u'a'), seed)};
            for (qsizetype at = 0; at < length; ++at) {
                QString other = text;
                other[at] = u'b';
                hashes.insert(kx::keyhash::hash(other, seed));
            }
            QCOMPARE(hashes.size(), length + 2);
        }
    }

    void dependsOnTheSeed()
    {
        for (const QString &text : {QString(), QStringLiteral("a"), QStringLiteral("a longer text than before")})
            QVERIFY(kx::keyhash::hash(text, 1) != kx::keyhash::hash(text, 2));
    }

    void spreadsKeysOfOneMake_data()
    {
        QTest::addColumn<QString>("make");
        QTest::newRow("numbers") << QStringLiteral("%1");
        QTest::newRow("numbers behind") << QStringLiteral("thumbnail/clip-%1");
        QTest::newRow("numbers in front") << QStringLiteral("%1.thumbnail.png");
        QTest::newRow("numbers in the middle") << QStringLiteral("thumbnail/%1/large.png");
    }
    void spreadsKeysOfOneMake()
    {
        QFETCH(const QString, make);
        constexpr int keys = 10'000;
        constexpr quint32 cells = 32'768; // as a table of so many keys looks at the low bits
        std::vector<int> used(cells);
        QSet<quint32> hashes;
        for (int i = 0; i < keys; ++i) {
            const quint32 hash = kx::keyhash::hash(make.arg(i), seed);
            ++used[hash % cells];
            hashes.insert(hash);
        }
        QVERIFY(hashes.size() >= keys - 2);
        QVERIFY(*std::max_element(used.begin(), used.end()) <= 8);
    }

    void takesWhateverHashATypeHas()
    {
        const std::string text = "text";
        QCOMPARE(kx::keyhash::hash(text, seed), kx::keyhash::hash(std::string("text"), seed));
        QVERIFY(kx::keyhash::hash(1, seed) != kx::keyhash::hash(2, seed));
    }
};

QTEST_GUILESS_MAIN(KeyHashTest)
#include "KeyHashTest.moc"
