#include "linkcfg/qtcpipcfgwidget.h"

#include "pagetest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>

namespace {

class TcpipPage : public PageTest<QTcpipCfgWidget>
{
protected:
    tcpip_cfg settings() const
    {
        tcpip_cfg cfg;
        memset(&cfg, 0x55, sizeof cfg);
        page->settings_get(&cfg);
        return cfg;
    }
    // Which of the fields that depend on another one can be edited.
    QString editable() const
    {
        QStringList names;
        for (const char* name : {"lineEdit_ipv4_addr", "lineEdit_ipv6_addr", "spinBox_local_port"})
            if (child<QWidget>(name)->isEnabled())
                names += QString(name).section('_', 1);
        return names.join(' ');
    }
};

const std::string ALL_SET = "[tcpip_cfg]\nip_version=1\nprotocol=3\nipv4_addr=10.0.0.5\n"
                            "ipv6_addr=::1\nremote_port=1\nlocal_port=2\nlocal_port_random=false\n"
                            "timeout=10\n";

} // namespace

TEST_F(TcpipPage, ShowsItsFileAndMendsOnlyTheValuesThatCannotBe)
{
    const std::tuple<std::string, const char*, const char*, std::string> rows[] = {
        {"", "192.168.100.101", "ipv4_addr", ""},
        {ALL_SET, "::1", "ipv6_addr local_port", ALL_SET},
        {"[tcpip_cfg]\nip_version=2\n", "fe80::0001%1", "ipv4_addr",
         "[tcpip_cfg]\nip_version=-1\n"},
        {"[tcpip_cfg]\nremote_port=70000\n", "192.168.100.101", "ipv4_addr",
         "[tcpip_cfg]\nremote_port=65535\n"},
    };
    for (const auto& [before, addr, fields, after] : rows) {
        SCOPED_TRACE(before);
        open(before);
        EXPECT_STREQ(settings().addr, addr);
        EXPECT_EQ(editable(), fields);
        EXPECT_EQ(close(), after);
    }
}

TEST_F(TcpipPage, StoresOnlyWhatTheUserChanged)
{
    open("");
    QTest::keyClick(child<QSpinBox>("spinBox_timeot"), Qt::Key_Up);
    EXPECT_EQ(close(), "[tcpip_cfg]\ntimeout=510\n");

    open("[tcpip_cfg]\nzz=1\n");
    QTest::mouseClick(child<QCheckBox>("checkBox_random_local_port"), Qt::LeftButton);
    QTest::keyClick(child<QComboBox>("comboBox_ip_version"), Qt::Key_Down);
    EXPECT_EQ(editable(), "ipv6_addr local_port");
    child<QLineEdit>("lineEdit_ipv6_addr")->selectAll();
    QTest::keyClicks(child<QLineEdit>("lineEdit_ipv6_addr"), "fe80::2%eth0");
    EXPECT_STREQ(settings().addr, "fe80::2%eth0");
    EXPECT_EQ(close(), "[tcpip_cfg]\nip_version=1\nipv6_addr=fe80::2%eth0\n"
                       "local_port_random=false\nzz=1\n");
}

TEST_F(TcpipPage, RecordHoldsEachWidgetAndAnAddressThatFits)
{
    open(ALL_SET);
    const tcpip_cfg cfg = settings();
    EXPECT_EQ(std::tie(cfg.ip_version, cfg.protocol, cfg.remote_port, cfg.local_port, cfg.timeout),
              std::make_tuple(TCPIP_V6, TCPIP_UDP_MULTICAST, 1, 2, 10));
    EXPECT_FALSE(cfg.local_port_random);
    EXPECT_EQ(QByteArray(cfg.addr, 64), QByteArray("::1").leftJustified(64, '\0'));

    child<QLineEdit>("lineEdit_ipv6_addr")->setText(QString(63, QChar(0xE9)) + "yz");
    EXPECT_EQ(QByteArray(settings().addr, 64), QByteArray(63, '\xE9') + '\0');
}
