#include "qtcpipcfgwidget.h"

#include "dialogfile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

namespace {

class TcpipPage : public testing::Test
{
protected:
    void open(const std::string& text)
    {
        file.write(text);
        page = std::make_unique<QTcpipCfgWidget>(nullptr, file.path());
    }

    std::string close()
    {
        page.reset();
        return file.text();
    }

    template <typename Widget> Widget* child(const char* name) const
    {
        return page->findChild<Widget*>(name);
    }

    bool enabled(const char* name) const { return child<QWidget>(name)->isEnabled(); }

    DialogFile file;
    std::unique_ptr<QTcpipCfgWidget> page;
};

struct FileRow
{
    const char* name;
    std::string before;
    const char* addr;
    bool ipv6_enabled, local_port_enabled;
    std::string after;
};

class TcpipPageFile : public TcpipPage, public testing::WithParamInterface<FileRow>
{
};

TEST_P(TcpipPageFile, is_shown_and_left_as_told)
{
    const FileRow& row = GetParam();
    open(row.before);
    tcpip_cfg cfg;
    page->settings_get(&cfg);
    EXPECT_STREQ(cfg.addr, row.addr);
    EXPECT_EQ(enabled("lineEdit_ipv6_addr"), row.ipv6_enabled);
    EXPECT_NE(enabled("lineEdit_ipv4_addr"), row.ipv6_enabled);
    EXPECT_EQ(enabled("spinBox_local_port"), row.local_port_enabled);
    EXPECT_EQ(close(), row.after);
}

const std::string ALL_SET = "[tcpip_cfg]\nip_version=1\nprotocol=3\nipv4_addr=10.0.0.5\n"
                            "ipv6_addr=::1\nremote_port=1\nlocal_port=2\nlocal_port_random=false\n"
                            "timeout=10\n";

INSTANTIATE_TEST_SUITE_P(
    Files, TcpipPageFile,
    testing::Values(FileRow{"no_file", "", "192.168.100.101", false, false, ""},
                    FileRow{"every_key", ALL_SET, "::1", true, true, ALL_SET},
                    FileRow{"ipv6_default", "[tcpip_cfg]\nip_version=1\n", "fe80::0001%1", true,
                            false, "[tcpip_cfg]\nip_version=1\n"},
                    FileRow{"no_such_version", "[tcpip_cfg]\nip_version=2\n", "fe80::0001%1", false,
                            false, "[tcpip_cfg]\nip_version=-1\n"},
                    FileRow{"port_is_bounded", "[tcpip_cfg]\nremote_port=70000\n",
                            "192.168.100.101", false, false, "[tcpip_cfg]\nremote_port=65535\n"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(TcpipPage, stores_only_what_the_user_changed)
{
    open("");
    auto* timeout = child<QSpinBox>("spinBox_timeot");
    QTest::keyClick(timeout, Qt::Key_Up);
    EXPECT_EQ(close(), "[tcpip_cfg]\ntimeout=510\n");

    open("[tcpip_cfg]\nzz=1\n");
    QTest::mouseClick(child<QCheckBox>("checkBox_random_local_port"), Qt::LeftButton);
    EXPECT_TRUE(enabled("spinBox_local_port"));
    QTest::keyClick(child<QComboBox>("comboBox_ip_version"), Qt::Key_Down);
    EXPECT_TRUE(enabled("lineEdit_ipv6_addr"));
    child<QLineEdit>("lineEdit_ipv6_addr")->selectAll();
    QTest::keyClicks(child<QLineEdit>("lineEdit_ipv6_addr"), "fe80::2%eth0");
    tcpip_cfg cfg;
    page->settings_get(&cfg);
    EXPECT_STREQ(cfg.addr, "fe80::2%eth0");
    EXPECT_EQ(close(), "[tcpip_cfg]\nip_version=1\nipv6_addr=fe80::2%eth0\n"
                       "local_port_random=false\nzz=1\n");
}

TEST_F(TcpipPage, record_holds_each_widget_and_an_address_that_fits)
{
    open(ALL_SET);
    tcpip_cfg cfg;
    memset(&cfg, 0x55, sizeof cfg);
    page->settings_get(&cfg);
    EXPECT_EQ(cfg.ip_version, TCPIP_V6);
    EXPECT_EQ(cfg.protocol, TCPIP_UDP_MULTICAST);
    EXPECT_EQ(cfg.remote_port, 1);
    EXPECT_EQ(cfg.local_port, 2);
    EXPECT_FALSE(cfg.local_port_random);
    EXPECT_EQ(cfg.timeout, 10);
    EXPECT_EQ(QByteArray(cfg.addr, 64), QByteArray("::1").leftJustified(64, '\0'));

    child<QLineEdit>("lineEdit_ipv6_addr")->setText(QString(63, QChar(0xE9)) + "yz");
    page->settings_get(&cfg);
    EXPECT_EQ(QByteArray(cfg.addr, 64), QByteArray(63, '\xE9') + '\0');
}

} // namespace
