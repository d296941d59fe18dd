#include "config/UiConfig.h"

#include "database/OpenDictionary.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

#include <algorithm>
#include <iterator>

namespace {

constexpr char platformFolder[] = "/opt/Merivon/";
constexpr qint64 maximumFileSize = 65536; // more is no text of a kind, and is not read

// The kind's text from the platform's type file; empty when there is no good one.
QString systemTypeFromFile()
{
    QFile file(QLatin1String(platformFolder) + QStringLiteral("systemType.txt"));
    // Only a regular file: to open a pipe could wait for ever.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) {
        qDebug() << "Failed to open " << platformFolder << "systemType.txt";
        return {};
    }
    if (file.size() < 3) {
        qDebug() << "Invalid file size (" << platformFolder << "systemType.txt)";
        return {};
    }
    QString text = QString::fromUtf8(file.read(maximumFileSize)).trimmed();
    qDebug() << "System type from file: " << text;
    return text;
}

} // namespace

// What sets the kinds of dispenser apart, and what the dictionary may override.
struct UiConfig::Tables
{
    struct Kind
    {
        const char* name;
        SystemType type;
        const char* model;
    };
    static constexpr Kind kinds[] = {
        {"kra", KRA, "KRA Pro"},
        {"talvo", TALVO, "Talvo"},
        {"talvogateway", TALVOGATEWAY, "Talvo Gateway"},
    };

    struct Default
    {
        int UiConfig::*field;
        int ofKind[std::size(kinds)];
    };
    // Kept to the pixel: a talvo's service screen is one line lower than its screen, its video area
    // narrower and set off downwards. The platform's other programs lay themselves out by these.
    static constexpr Default defaults[] = {
        {&UiConfig::m_screenWidth, {1920, 1920, 800}},
        {&UiConfig::m_screenHeight, {1080, 1080, 480}},
        {&UiConfig::m_serviceWidth, {1920, 1920, 800}},
        {&UiConfig::m_serviceHeight, {1080, 1079, 480}},
        {&UiConfig::m_videoWidth, {1920, 1810, 0}},
        {&UiConfig::m_videoHeight, {1080, 1080, 0}},
        {&UiConfig::m_videoXoffset, {0, 0, 0}},
        {&UiConfig::m_videoYoffset, {0, 55, 0}},
        {&UiConfig::m_mainWidth, {1920, 1920, 800}},
        {&UiConfig::m_mainHeight, {360, 360, 480}},
        {&UiConfig::m_brandWidth, {420, 420, 420}},
        {&UiConfig::m_brandHeight, {300, 300, 300}},
        {&UiConfig::m_brandSpacing, {20, 20, 10}},
        {&UiConfig::m_numBarrels, {0, 4, 2}},
    };

    struct Override
    {
        const char* name;
        int UiConfig::*field;
        ChangeSignal changed;
        bool onGateway;
    };
    // Kept: a gateway always has its built-in brand size.
    static constexpr Override geometry[] = {
        {"screenWidth", &UiConfig::m_screenWidth, &UiConfig::screenWidthChanged, true},
        {"screenHeight", &UiConfig::m_screenHeight, &UiConfig::screenHeightChanged, true},
        {"serviceWidth", &UiConfig::m_serviceWidth, &UiConfig::serviceWidthChanged, true},
        {"serviceHeight", &UiConfig::m_serviceHeight, &UiConfig::serviceHeightChanged, true},
        {"videoWidth", &UiConfig::m_videoWidth, &UiConfig::videoWidthChanged, true},
        {"videoHeight", &UiConfig::m_videoHeight, &UiConfig::videoHeightChanged, true},
        {"videoXoffset", &UiConfig::m_videoXoffset, &UiConfig::videoXoffsetChanged, true},
        {"videoYoffset", &UiConfig::m_videoYoffset, &UiConfig::videoYoffsetChanged, true},
        {"mainWidth", &UiConfig::m_mainWidth, &UiConfig::mainWidthChanged, true},
        {"mainHeight", &UiConfig::m_mainHeight, &UiConfig::mainHeightChanged, true},
        {"brandHeight", &UiConfig::m_brandHeight, &UiConfig::brandHeightChanged, false},
        {"brandWidth", &UiConfig::m_brandWidth, &UiConfig::brandWidthChanged, false},
        {"brandSpacing", &UiConfig::m_brandSpacing, &UiConfig::brandSpacingChanged, true},
    };
};

UiConfig* UiConfig::getInstance()
{
    static UiConfig instance;
    return &instance;
}

UiConfig::UiConfig()
{
    initialize();
    readFromDb();
}

void UiConfig::initialize()
{
    qDebug() << "Initialize UiConfig";
    TableDictionary dictionary(nullptr);
    const QMutexLocker lock(&m_mutex);
    QString text = dictionary.getDictionaryValue(QStringLiteral("systemType"));
    if (text.isEmpty()) {
        qDebug() << "Missing system type, reading from file";
        text = systemTypeFromFile();
    }
    const auto* kind
        = std::find_if(std::begin(Tables::kinds), std::end(Tables::kinds),
                       [&text](const auto& each) { return text == QLatin1String(each.name); });
    if (kind != std::end(Tables::kinds)) {
        applyDefaults(static_cast<int>(kind - Tables::kinds));
        return;
    }
    qDebug() << "Invalid system type: " << text;
    m_systemType = UNKNOWN;
    m_systemModel = QStringLiteral("Unknown");
}

void UiConfig::applyDefaults(int kind)
{
    m_systemType = Tables::kinds[kind].type;
    m_systemName = QLatin1String(Tables::kinds[kind].name);
    m_systemModel = QLatin1String(Tables::kinds[kind].model);
    m_mainGradient = false;
    for (const Tables::Default& each : Tables::defaults)
        this->*each.field = each.ofKind[kind];
    setOwnWifiFccId();
}

void UiConfig::setOwnWifiFccId()
{
    if (m_systemType == TALVO)
        m_wifiFccId = QStringLiteral("ZT51830KB");
}

bool UiConfig::readFromDb()
{
    qDebug() << "Reading configuration...";
    const QMutexLocker lock(&m_mutex);
    OpenDictionary dictionary;
    setSystemModel(setting(dictionary, "systemModel", m_systemModel));
    m_system_Model = QString(m_systemModel).replace(' ', '_');
    setOwnWifiFccId(); // no setting overrides it, and what the scene wrote does not last
    for (const Tables::Override& each : Tables::geometry) {
        if (each.onGateway || m_systemType != TALVOGATEWAY)
            readOverride(dictionary, each.name, each.field, each.changed);
    }
    setMainGradient(setting(dictionary, "mainGradient", m_mainGradient));
    readOverride(dictionary, "numBarrels", &UiConfig::m_numBarrels, &UiConfig::numBarrelsChanged);

    qDebug() << "SystemType: " << m_systemType << ", SystemModel: " << m_systemModel
             << ", FCC ID: " << m_wifiFccId;
    qDebug() << "main: " << m_mainWidth << "x" << m_mainHeight << "," << m_brandWidth << "x"
             << m_brandHeight;
    return true;
}

void UiConfig::readOverride(TableDictionary& dictionary, const char* name, int UiConfig::*field,
                            ChangeSignal changed)
{
    change(this->*field, setting(dictionary, name, this->*field), changed);
}

template <typename T>
T UiConfig::setting(TableDictionary& dictionary, const char* name, const T& present)
{
    const QString key = QLatin1String(name);
    // A look with a default stores it. What a dispenser of unknown kind has are no defaults, and
    // they would stay when its kind is known.
    if (m_systemType == UNKNOWN && !dictionary.contains(key))
        return present;
    return dictionary.getDictionaryValue(key, present);
}

bool UiConfig::saveToDb()
{
    const QMutexLocker lock(&m_mutex);
    TableDictionary dictionary(nullptr);
    const bool gradientSaved
        = dictionary.setDictionaryValue(QStringLiteral("mainGradient"), m_mainGradient);
    const bool barrelsSaved
        = dictionary.setDictionaryValue(QStringLiteral("numBarrels"), m_numBarrels);
    const bool saved = gradientSaved && barrelsSaved;
    qDebug() << "System config saved to DB: " << saved;
    return saved;
}
