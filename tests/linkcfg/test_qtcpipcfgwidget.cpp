#include "linkcfg/qtcpipcfgwidget.h"

#include "pagetest.h"

#include <QCheckBox>

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
};

const std::string ALL_SET = "[tcpip_cfg]\nip_version=1\nprotocol=3\nipv4_addr=10.0.0.5\n"
                            "ipv6_addr=::1\nremote_port=1\nlocal_port=2\nlocal_port_random=false\n"
                            "timeout=10\n";

} // namespace

TEST_F(TcpipPage, ShowsItsFileAndMendsOnlyTheValuesThatCannotBe)
{
    const std::tuple<std::string, const char*, QString, std::string> rows[] = {
        {"", "192.168.100.101", "ipv4", ""},
        {ALL_SET, "::1", "ipv6 local", ALL_SET},
        {"[tcpip_cfg]\nip_version=2\n", "fe80::0001%1", "ipv4", "[tcpip_cfg]\nip_version=-1\n"},
        {"[tcpip_cfg]\nremote_port=70000\n", "192.168.100.101", "ipv4",
         "[tcpip_cfg]\nremote_port=65535\n"},
    };
    for (const auto& [before, addr, fields, after] : rows) {
        open(before);
        EXPECT_STREQ(settings().addr, addr) << before;
        for (const char* const field :
             {"lineEdit_ipv4_addr", "lineEdit_ipv6_addr", "spinBox_local_port"})
            EXPECT_EQ(child<QWidget>(field)->isEnabled(),
                      fields.contains(QString(field).section('_', 1, 1)));
        EXPECT_EQ(close(), after);
    }
}

TEST_F(TcpipPage, StoresOnlyWhatTheUserChanged)
{
    open("[tcpip_cfg]\nzz=1\n");
    QTest::mouseClick(child<QCheckBox>("checkBox_random_local_port"), Qt::LeftButton);
    QTest::keyClick(child<QComboBox>("comboBox_ip_version"), Qt::Key_Down);
    QTest::keyClick(child<QSpinBox>("spinBox_timeot"), Qt::Key_Up);
    EXPECT_TRUE(child<QWidget>("spinBox_local_port")->isEnabled());
    enter<QLineEdit>("lineEdit_ipv6_addr", "fe80::2%eth0");
    EXPECT_STREQ(settings().addr, "fe80::2%eth0");
    EXPECT_EQ(close(), "[tcpip_cfg]\nip_version=1\nipv6_addr=fe80::2%eth0\n"
                       "local_port_random=false\ntimeout=510\nzz=1\n");
}

TEST_F(TcpipPage, RecordHoldsEachWidgetAndAnAddressThatFits)
{
    open(ALL_SET);
    child<QLineEdit>("lineEdit_ipv6_addr")->setText(QString(63, QChar(0xE9)) + "yz");
    const tcpip_cfg cfg = settings();
    EXPECT_EQ(std::tie(cfg.ip_version, cfg.protocol, cfg.remote_port, cfg.local_port, cfg.timeout),
              std::make_tuple(TCPIP_V6, TCPIP_UDP_MULTICAST, 1, 2, 10));
    EXPECT_FALSE(cfg.local_port_random);
    EXPECT_EQ(QByteArray(cfg.addr, 64), QByteArray(63, '\xE9') + '\0');
    child<QLineEdit>("lineEdit_ipv6_addr")->setText("::1");
    EXPECT_EQ(QByteArray(settings().addr, 64), QByteArray("::1").leftJustified(64, '\0'));
}
