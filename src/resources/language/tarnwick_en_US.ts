<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>CnetCfg</name>
    <message>
        <source>250 kbps</source>
        <translation>250 kbps</translation>
    </message>
    <message>
        <source>500 kbps</source>
        <translation>500 kbps</translation>
    </message>
    <message>
        <source>1 Mbps</source>
        <translation>1 Mbps</translation>
    </message>
    <message>
        <source>N/A bps</source>
        <translation>N/A bps</translation>
    </message>
    <message>
        <source>cfg: link is NULL!!, please check</source>
        <translation>cfg: link is NULL!!, please check</translation>
    </message>
    <message>
        <source>cfg: link is not open!!, please check</source>
        <translation>cfg: link is not open!!, please check</translation>
    </message>
    <message>
        <source>cfg: read time out</source>
        <translation>cfg: read time out</translation>
    </message>
    <message>
        <source>cfg: read a short frame, lenght = %1</source>
        <translation>cfg: read a short frame, lenght = %1</translation>
    </message>
    <message>
        <source>cfg: read a invalid frame, head or end flag not match</source>
        <translation>cfg: read a invalid frame, head or end flag not match</translation>
    </message>
    <message>
        <source>read bytes (%1) is greater then needed (%2)</source>
        <translation>read bytes (%1) is greater then needed (%2)</translation>
    </message>
    <message>
        <source>response cmd (%1) is not we needed (%2)</source>
        <translation>response cmd (%1) is not we needed (%2)</translation>
    </message>
    <message>
        <source>cfg: set device to chan %1, %2</source>
        <translation>cfg: set device to chan %1, %2</translation>
    </message>
    <message>
        <source>cfg: searching chan %1 with %2 ...</source>
        <translation>cfg: searching chan %1 with %2 ...</translation>
    </message>
    <message>
        <source>cfg: set local device chan and baud failed</source>
        <translation>cfg: set local device chan and baud failed</translation>
    </message>
</context>
<context>
    <name>HashSelectDialog</name>
    <message>
        <source>CRC &amp; Hash</source>
        <translation>CRC &amp; Hash</translation>
    </message>
    <message>
        <source>CRC32</source>
        <translation>CRC32</translation>
    </message>
    <message>
        <source>SUM8</source>
        <translation>SUM8</translation>
    </message>
    <message>
        <source>Base64 Decode(HEX with space)</source>
        <translation>Base64 Decode(HEX with space)</translation>
    </message>
    <message>
        <source>Base64 Decode(ASCII)</source>
        <translation>Base64 Decode(ASCII)</translation>
    </message>
    <message>
        <source>Base64 Encode</source>
        <translation>Base64 Encode</translation>
    </message>
    <message>
        <source>CRC16</source>
        <translation>CRC16</translation>
    </message>
    <message>
        <source>XOR8</source>
        <translation>XOR8</translation>
    </message>
    <message>
        <source>SUM16</source>
        <translation>SUM16</translation>
    </message>
    <message>
        <source>CRC8</source>
        <translation>CRC8</translation>
    </message>
    <message>
        <source>&amp;Append to send window</source>
        <translation>&amp;Append to send window</translation>
    </message>
    <message>
        <source>SHA1</source>
        <translation>SHA1</translation>
    </message>
    <message>
        <source>Base64 Decode(HEX no space)</source>
        <translation>Base64 Decode(HEX no space)</translation>
    </message>
    <message>
        <source>MD5</source>
        <translation>MD5</translation>
    </message>
    <message>
        <source>MSB</source>
        <translation>MSB</translation>
    </message>
    <message>
        <source>%1 (Bit wise NOT: %2)</source>
        <translation>%1 (Bit wise NOT: %2)</translation>
    </message>
    <message>
        <source>%1 %2 (Bit wise NOT: %3 %4)</source>
        <translation>%1 %2 (Bit wise NOT: %3 %4)</translation>
    </message>
    <message>
        <source>%1 %2 %3 %4 (Bit wise NOT: %5 %6 %7 %8)</source>
        <translation>%1 %2 %3 %4 (Bit wise NOT: %5 %6 %7 %8)</translation>
    </message>
</context>
<context>
    <name>Loader</name>
    <message>
        <source>ldr: get device info ...</source>
        <translation>ldr: get device info ...</translation>
    </message>
    <message>
        <source>ldr: get device infomation failed, error or no reply</source>
        <translation>ldr: get device infomation failed, error or no reply</translation>
    </message>
    <message>
        <source>ldr: get devie information failed, invalid reply</source>
        <translation>ldr: get devie information failed, invalid reply</translation>
    </message>
    <message>
        <source>ldr: device ROM page size %1B, MTU %2B</source>
        <translation>ldr: device ROM page size %1B, MTU %2B</translation>
    </message>
    <message>
        <source>ldr: module name: </source>
        <translation>ldr: module name: </translation>
    </message>
    <message>
        <source>ldr: wrong firmware (%1) for module (%2) !!</source>
        <translation>ldr: wrong firmware (%1) for module (%2) !!</translation>
    </message>
    <message>
        <source>ldr: module name matched</source>
        <translation>ldr: module name matched</translation>
    </message>
    <message>
        <source>hard info (%1 bytes): %2 %3 %4 %5</source>
        <translation>hard info (%1 bytes): %2 %3 %4 %5</translation>
    </message>
    <message>
        <source>ldr: set device enter boot mode ... [done]</source>
        <translation>ldr: set device enter boot mode ... [done]</translation>
    </message>
    <message>
        <source>ldr: device reboot</source>
        <translation>ldr: device reboot</translation>
    </message>
    <message>
        <source>ldr: data sent, device no response</source>
        <translation>ldr: data sent, device no response</translation>
    </message>
    <message>
        <source>ldr: data sent, packet was broken at receiver</source>
        <translation>ldr: data sent, packet was broken at receiver</translation>
    </message>
    <message>
        <source>ldr: packet transfer aborted!</source>
        <translation>ldr: packet transfer aborted!</translation>
    </message>
    <message>
        <source>ldr: retry %1 bytes at offset %2</source>
        <translation>ldr: retry %1 bytes at offset %2</translation>
    </message>
    <message>
        <source>ldr: transfer aborted!</source>
        <translation>ldr: transfer aborted!</translation>
    </message>
    <message>
        <source>ldr: sending %1 bytes, progress %2/%3 (%4%)</source>
        <translation>ldr: sending %1 bytes, progress %2/%3 (%4%)</translation>
    </message>
    <message>
        <source>ldr: block(offset=%1, size=%2) verify failed, no reply</source>
        <translation>ldr: block(offset=%1, size=%2) verify failed, no reply</translation>
    </message>
    <message>
        <source>ldr: block(offset=%1, size=%2) verify failed, invalid reply</source>
        <translation>ldr: block(offset=%1, size=%2) verify failed, invalid reply</translation>
    </message>
    <message>
        <source>ldr: block(offset=%1, size=%2) verify ... [OK]</source>
        <translation>ldr: block(offset=%1, size=%2) verify ... [OK]</translation>
    </message>
    <message>
        <source>ldr: block(offset=%1, size=%2) updating ...</source>
        <translation>ldr: block(offset=%1, size=%2) updating ...</translation>
    </message>
    <message>
        <source>ldr: block(offset=%1, size=%2) CRC not match, please retry</source>
        <translation>ldr: block(offset=%1, size=%2) CRC not match, please retry</translation>
    </message>
    <message>
        <source>ldr: Upgrade thread started</source>
        <translation>ldr: Upgrade thread started</translation>
    </message>
    <message>
        <source>ldr: wait device enter boot ...</source>
        <translation>ldr: wait device enter boot ...</translation>
    </message>
    <message>
        <source>ldr: Upgrade progress aborted</source>
        <translation>ldr: Upgrade progress aborted</translation>
    </message>
    <message>
        <source>ldr: Sending firmware file ...</source>
        <translation>ldr: Sending firmware file ...</translation>
    </message>
    <message>
        <source>ldr: Firmware send failed, please retry</source>
        <translation>ldr: Firmware send failed, please retry</translation>
    </message>
    <message>
        <source>ldr: Firmware verify ...</source>
        <translation>ldr: Firmware verify ...</translation>
    </message>
    <message>
        <source>ldr: total took %1 seconds</source>
        <translation>ldr: total took %1 seconds</translation>
    </message>
    <message>
        <source>wrong firmware (%1)
for module     (%2)
Please select the right firmware</source>
        <translation>wrong firmware (%1)
for module     (%2)
Please select the right firmware</translation>
    </message>
    <message>
        <source>Upgrade in progress, please wait</source>
        <translation>Upgrade in progress, please wait</translation>
    </message>
    <message>
        <source>Open file failed</source>
        <translation>Open file failed</translation>
    </message>
    <message>
        <source>Get device infomation failed</source>
        <translation>Get device infomation failed</translation>
    </message>
    <message>
        <source>Get device info failed after device enter boot mode</source>
        <translation>Get device info failed after device enter boot mode</translation>
    </message>
    <message>
        <source>device not in boot mode, try again</source>
        <translation>device not in boot mode, try again</translation>
    </message>
    <message>
        <source>File verify failed</source>
        <translation>File verify failed</translation>
    </message>
    <message>
        <source>File sent and verified OK</source>
        <translation>File sent and verified OK</translation>
    </message>
    <message>
        <source>Alloc memory (%1 bytes) failed</source>
        <translation>Alloc memory (%1 bytes) failed</translation>
    </message>
    <message>
        <source>ldr: device ROM page size %1B, MTU %2B: neither may be 0</source>
        <translation>ldr: device ROM page size %1B, MTU %2B: neither may be 0</translation>
    </message>
    <message>
        <source>ldr: packet length below 4 bytes, please set a larger one</source>
        <translation>ldr: packet length below 4 bytes, please set a larger one</translation>
    </message>
    <message>
        <source>File too large (%1 bytes), %2 bytes at most</source>
        <translation>File too large (%1 bytes), %2 bytes at most</translation>
    </message>
    <message>
        <source>Read file failed (%1 of %2 bytes)</source>
        <translation>Read file failed (%1 of %2 bytes)</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>please select a file to send</source>
        <translation>please select a file to send</translation>
    </message>
    <message>
        <source>file %1 can&apos;t be read: %2</source>
        <translation>file %1 can&apos;t be read: %2</translation>
    </message>
    <message>
        <source>file sent: %1</source>
        <translation>file sent: %1</translation>
    </message>
    <message>
        <source>MainWindow</source>
        <translation>MainWindow</translation>
    </message>
    <message>
        <source>receive area</source>
        <translation>receive area</translation>
    </message>
    <message>
        <source>&amp;file</source>
        <translation>&amp;file</translation>
    </message>
    <message>
        <source>&amp;help</source>
        <translation>&amp;help</translation>
    </message>
    <message>
        <source>auto clear</source>
        <translation>auto clear</translation>
    </message>
    <message>
        <source> lines</source>
        <translation> lines</translation>
    </message>
    <message>
        <source>hex display</source>
        <translation>hex display</translation>
    </message>
    <message>
        <source>&amp;save ...</source>
        <translation>&amp;save ...</translation>
    </message>
    <message>
        <source>&amp;pause</source>
        <translation>&amp;pause</translation>
    </message>
    <message>
        <source>&amp;extend&lt;&lt;</source>
        <translation>&amp;extend&lt;&lt;</translation>
    </message>
    <message>
        <source>frame mode</source>
        <translation>frame mode</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>time stamp</source>
        <translation>time stamp</translation>
    </message>
    <message>
        <source>display TX</source>
        <translation>display TX</translation>
    </message>
    <message>
        <source>&amp;clear</source>
        <translation>&amp;clear</translation>
    </message>
    <message>
        <source>&amp;CRC &amp;&amp; Hash</source>
        <translation>&amp;CRC &amp;&amp; Hash</translation>
    </message>
    <message>
        <source>save to &amp;file</source>
        <translation>save to &amp;file</translation>
    </message>
    <message>
        <source>&amp;browse...</source>
        <translation>&amp;browse...</translation>
    </message>
    <message>
        <source>send area</source>
        <translation>send area</translation>
    </message>
    <message>
        <source>&amp;open</source>
        <translation>&amp;open</translation>
    </message>
    <message>
        <source>&amp;send</source>
        <translation>&amp;send</translation>
    </message>
    <message>
        <source>hex mode</source>
        <translation>hex mode</translation>
    </message>
    <message>
        <source>&amp;raw text</source>
        <translation>&amp;raw text</translation>
    </message>
    <message>
        <source>send file</source>
        <translation>send file</translation>
    </message>
    <message>
        <source>&amp;auto send</source>
        <translation>&amp;auto send</translation>
    </message>
    <message>
        <source>count </source>
        <translation>count </translation>
    </message>
    <message>
        <source>loop</source>
        <translation>loop</translation>
    </message>
    <message>
        <source>operation</source>
        <translation>operation</translation>
    </message>
    <message>
        <source>selected/alias</source>
        <translation>selected/alias</translation>
    </message>
    <message>
        <source>hex/string</source>
        <translation>hex/string</translation>
    </message>
    <message>
        <source>send in turn at:</source>
        <translation>send in turn at:</translation>
    </message>
    <message>
        <source>&amp;load configuration ...</source>
        <translation>&amp;load configuration ...</translation>
    </message>
    <message>
        <source>&amp;store configuration</source>
        <translation>&amp;store configuration</translation>
    </message>
    <message>
        <source>store configuration &amp;as ...</source>
        <translation>store configuration &amp;as ...</translation>
    </message>
    <message>
        <source>&amp;about</source>
        <translation>&amp;about</translation>
    </message>
    <message>
        <source>about Tarnwick</source>
        <translation>about Tarnwick</translation>
    </message>
    <message>
        <source>note</source>
        <translation>note</translation>
    </message>
    <message>
        <source>Corvane Serial Tool
</source>
        <translation>Corvane Serial Tool
</translation>
    </message>
    <message>
        <source>Chose configration file to load</source>
        <translation>Chose configration file to load</translation>
    </message>
    <message>
        <source>Ini files (*.ini)</source>
        <translation>Ini files (*.ini)</translation>
    </message>
    <message>
        <source>Chose configration file to save</source>
        <translation>Chose configration file to save</translation>
    </message>
    <message>
        <source>loading language %1 failed</source>
        <translation>loading language %1 failed</translation>
    </message>
    <message>
        <source>&amp;resume</source>
        <translation>&amp;resume</translation>
    </message>
    <message>
        <source>Chose file to save</source>
        <translation>Chose file to save</translation>
    </message>
    <message>
        <source>save to file</source>
        <translation>save to file</translation>
    </message>
    <message>
        <source>please select a file to save</source>
        <translation>please select a file to save</translation>
    </message>
    <message>
        <source>open file failed</source>
        <translation>open file failed</translation>
    </message>
    <message>
        <source>Text file (*.txt)</source>
        <translation>Text file (*.txt)</translation>
    </message>
    <message>
        <source>save window</source>
        <translation>save window</translation>
    </message>
    <message>
        <source>port not opened</source>
        <translation>port not opened</translation>
    </message>
    <message>
        <source>port write error: </source>
        <translation>port write error: </translation>
    </message>
    <message>
        <source>char &apos;%1&apos; at offset %2 is not a hex number</source>
        <translation>char &apos;%1&apos; at offset %2 is not a hex number</translation>
    </message>
    <message>
        <source>format error at %1: %2</source>
        <translation>format error at %1: %2</translation>
    </message>
    <message>
        <source>format error at %1: \</source>
        <translation>format error at %1: \</translation>
    </message>
    <message>
        <source>please open a port first</source>
        <translation>please open a port first</translation>
    </message>
    <message>
        <source>Chose file to send</source>
        <translation>Chose file to send</translation>
    </message>
    <message>
        <source>Any file (*.*)</source>
        <translation>Any file (*.*)</translation>
    </message>
    <message>
        <source>No serial port exist in system</source>
        <translation>No serial port exist in system</translation>
    </message>
    <message>
        <source>Open %1 failed</source>
        <translation>Open %1 failed</translation>
    </message>
    <message>
        <source>&amp;close</source>
        <translation>&amp;close</translation>
    </message>
    <message>
        <source>%1 removed</source>
        <translation>%1 removed</translation>
    </message>
    <message>
        <source>send</source>
        <translation>send</translation>
    </message>
    <message>
        <source>No strings found in list</source>
        <translation>No strings found in list</translation>
    </message>
    <message>
        <source>&amp;hide&gt;&gt;</source>
        <translation>&amp;hide&gt;&gt;</translation>
    </message>
</context>
<context>
    <name>QFramerCnet</name>
    <message>
        <source>cnet: read frame failed or time out, nbytes=%1</source>
        <translation>cnet: read frame failed or time out, nbytes=%1</translation>
    </message>
    <message>
        <source>cnet: not a valid data frame, nbytes=%1</source>
        <translation>cnet: not a valid data frame, nbytes=%1</translation>
    </message>
    <message>
        <source>cnet: frame not from target (%1H)</source>
        <translation>cnet: frame not from target (%1H)</translation>
    </message>
    <message>
        <source>cnet: local response failed (%1)</source>
        <translation>cnet: local response failed (%1)</translation>
    </message>
    <message>
        <source>cnet: local no response</source>
        <translation>cnet: local no response</translation>
    </message>
    <message>
        <source>cnet: response error, lost sync ?</source>
        <translation>cnet: response error, lost sync ?</translation>
    </message>
    <message>
        <source>cnet: send failed (errno=%1H)</source>
        <translation>cnet: send failed (errno=%1H)</translation>
    </message>
</context>
<context>
    <name>QFramerRwlt</name>
    <message>
        <source>rwlt: read frame failed or time out, nbytes=%1</source>
        <translation>rwlt: read frame failed or time out, nbytes=%1</translation>
    </message>
    <message>
        <source>rwlt: not a valid data frame, nbytes=%1</source>
        <translation>rwlt: not a valid data frame, nbytes=%1</translation>
    </message>
</context>
<context>
    <name>QLinkCfgDlg</name>
    <message>
        <source>Serial</source>
        <translation>Serial</translation>
    </message>
    <message>
        <source>TCPIP</source>
        <translation>TCPIP</translation>
    </message>
    <message>
        <source>CAN</source>
        <translation>CAN</translation>
    </message>
    <message>
        <source>USB</source>
        <translation>USB</translation>
    </message>
    <message>
        <source>Link config</source>
        <translation>Link config</translation>
    </message>
    <message>
        <source>Sorry, not implemented</source>
        <translation>Sorry, not implemented</translation>
    </message>
    <message>
        <source>Link type</source>
        <translation>Link type</translation>
    </message>
</context>
<context>
    <name>QLinkSerial</name>
    <message>
        <source>Serial port already opened</source>
        <translation>Serial port already opened</translation>
    </message>
    <message>
        <source>Open %1 failed</source>
        <translation>Open %1 failed</translation>
    </message>
    <message>
        <source>ser: getchar (%1)</source>
        <translation>ser: getchar (%1)</translation>
    </message>
    <message>
        <source>ser: putchar (%1)</source>
        <translation>ser: putchar (%1)</translation>
    </message>
    <message>
        <source>ser: read    (%1)</source>
        <translation>ser: read    (%1)</translation>
    </message>
    <message>
        <source>ser: write   (%1)</source>
        <translation>ser: write   (%1)</translation>
    </message>
    <message>
        <source>ser: readline(%1)</source>
        <translation>ser: readline(%1)</translation>
    </message>
</context>
<context>
    <name>QLinkTcpip</name>
    <message>
        <source>tcpip: drop %1 bytes</source>
        <translation>tcpip: drop %1 bytes</translation>
    </message>
    <message>
        <source>tcpip: getchar (%1)</source>
        <translation>tcpip: getchar (%1)</translation>
    </message>
    <message>
        <source>tcpip: putchar (%1)</source>
        <translation>tcpip: putchar (%1)</translation>
    </message>
    <message>
        <source>tcpip: read    (%1)</source>
        <translation>tcpip: read    (%1)</translation>
    </message>
    <message>
        <source>tcpip: write   (%1)</source>
        <translation>tcpip: write   (%1)</translation>
    </message>
    <message>
        <source>tcpip: write failed</source>
        <translation>tcpip: write failed</translation>
    </message>
    <message>
        <source>tcpip: write failed, connection not opened</source>
        <translation>tcpip: write failed, connection not opened</translation>
    </message>
    <message>
        <source>tcpip: readline failed, connection not opened</source>
        <translation>tcpip: readline failed, connection not opened</translation>
    </message>
    <message>
        <source>tcpip: protocol not supported</source>
        <translation>tcpip: protocol not supported</translation>
    </message>
    <message>
        <source>tcpip: connected failed</source>
        <translation>tcpip: connected failed</translation>
    </message>
    <message>
        <source>tcpip: unconnected</source>
        <translation>tcpip: unconnected</translation>
    </message>
    <message>
        <source>tcpip: looking up host</source>
        <translation>tcpip: looking up host</translation>
    </message>
    <message>
        <source>tcpip: connecting ...</source>
        <translation>tcpip: connecting ...</translation>
    </message>
    <message>
        <source>tcpip: connected</source>
        <translation>tcpip: connected</translation>
    </message>
    <message>
        <source>tcpip: socket bound</source>
        <translation>tcpip: socket bound</translation>
    </message>
    <message>
        <source>tcpip: listening ...</source>
        <translation>tcpip: listening ...</translation>
    </message>
    <message>
        <source>tcpip: closing ...</source>
        <translation>tcpip: closing ...</translation>
    </message>
    <message>
        <source>tcpip: unknow state</source>
        <translation>tcpip: unknow state</translation>
    </message>
</context>
<context>
    <name>QLinkWinsock</name>
    <message>
        <source>tcpip: drop %1 bytes</source>
        <translation>tcpip: drop %1 bytes</translation>
    </message>
    <message>
        <source>tcpip: getchar [%1]</source>
        <translation>tcpip: getchar [%1]</translation>
    </message>
    <message>
        <source>tcpip: putchar [%1]</source>
        <translation>tcpip: putchar [%1]</translation>
    </message>
    <message>
        <source>tcpip: read(%1)[%2]</source>
        <translation>tcpip: read(%1)[%2]</translation>
    </message>
    <message>
        <source>tcpip: write   [%1]</source>
        <translation>tcpip: write   [%1]</translation>
    </message>
    <message>
        <source>tcpip: write failed, connection not opened</source>
        <translation>tcpip: write failed, connection not opened</translation>
    </message>
    <message>
        <source>winsock: WSAStartup failed</source>
        <translation>winsock: WSAStartup failed</translation>
    </message>
    <message>
        <source>tcpip: protocol not supported</source>
        <translation>tcpip: protocol not supported</translation>
    </message>
    <message>
        <source>tcpip: create socket failed</source>
        <translation>tcpip: create socket failed</translation>
    </message>
    <message>
        <source>tcpip: set socket sending timeout failed</source>
        <translation>tcpip: set socket sending timeout failed</translation>
    </message>
    <message>
        <source>tcpip: set socket receiving timeout failed</source>
        <translation>tcpip: set socket receiving timeout failed</translation>
    </message>
    <message>
        <source>tcpip: set socket broadcast opt failed</source>
        <translation>tcpip: set socket broadcast opt failed</translation>
    </message>
    <message>
        <source>tcpip: connect to host %1:%2 failed</source>
        <translation>tcpip: connect to host %1:%2 failed</translation>
    </message>
</context>
<context>
    <name>QSerialCfgWidget</name>
    <message>
        <source>custom</source>
        <translation>custom</translation>
    </message>
    <message>
        <source>none</source>
        <translation>none</translation>
    </message>
    <message>
        <source>odd</source>
        <translation>odd</translation>
    </message>
    <message>
        <source>even</source>
        <translation>even</translation>
    </message>
    <message>
        <source>mark</source>
        <translation>mark</translation>
    </message>
    <message>
        <source>space</source>
        <translation>space</translation>
    </message>
    <message>
        <source>off</source>
        <translation>off</translation>
    </message>
    <message>
        <source>hard ware</source>
        <translation>hard ware</translation>
    </message>
    <message>
        <source>xon/xoff</source>
        <translation>xon/xoff</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>Port:</source>
        <translation>Port:</translation>
    </message>
    <message>
        <source>Baud Rate:</source>
        <translation>Baud Rate:</translation>
    </message>
    <message>
        <source>Data Bits:</source>
        <translation>Data Bits:</translation>
    </message>
    <message>
        <source>Stop Bits:</source>
        <translation>Stop Bits:</translation>
    </message>
    <message>
        <source>Parity:</source>
        <translation>Parity:</translation>
    </message>
    <message>
        <source>Flow Ctrl:</source>
        <translation>Flow Ctrl:</translation>
    </message>
    <message>
        <source>Timeout:</source>
        <translation>Timeout:</translation>
    </message>
</context>
<context>
    <name>QTcpipCfgWidget</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>IP version:</source>
        <translation>IP version:</translation>
    </message>
    <message>
        <source>Protocol:</source>
        <translation>Protocol:</translation>
    </message>
    <message>
        <source>TCP Client</source>
        <translation>TCP Client</translation>
    </message>
    <message>
        <source>TCP Server</source>
        <translation>TCP Server</translation>
    </message>
    <message>
        <source>UDP</source>
        <translation>UDP</translation>
    </message>
    <message>
        <source>UDP Multicast</source>
        <translation>UDP Multicast</translation>
    </message>
    <message>
        <source>UDP Broadcast</source>
        <translation>UDP Broadcast</translation>
    </message>
    <message>
        <source>IPv4 address:</source>
        <translation>IPv4 address:</translation>
    </message>
    <message>
        <source>IPv6 address:</source>
        <translation>IPv6 address:</translation>
    </message>
    <message>
        <source>Remote port:</source>
        <translation>Remote port:</translation>
    </message>
    <message>
        <source>Local port:</source>
        <translation>Local port:</translation>
    </message>
    <message>
        <source>Random</source>
        <translation>Random</translation>
    </message>
    <message>
        <source>Time out:</source>
        <translation>Time out:</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
</context>
<context>
    <name>QextSerialPort</name>
    <message>
        <source>the port is open already</source>
        <translation>the port is open already</translation>
    </message>
    <message>
        <source>%1 bytes wait to be sent, there is no room for %2 more</source>
        <translation>%1 bytes wait to be sent, there is no room for %2 more</translation>
    </message>
    <message>
        <source>the device has gone</source>
        <translation>the device has gone</translation>
    </message>
    <message>
        <source>%1 of %2 bytes were not taken in time</source>
        <translation>%1 of %2 bytes were not taken in time</translation>
    </message>
    <message>
        <source>the device gives no settings</source>
        <translation>the device gives no settings</translation>
    </message>
    <message>
        <source>the device refuses 1.5 stop bits</source>
        <translation>the device refuses 1.5 stop bits</translation>
    </message>
    <message>
        <source>the device refuses %1 bits/s and offers %2</source>
        <translation>the device refuses %1 bits/s and offers %2</translation>
    </message>
</context>
</TS>
