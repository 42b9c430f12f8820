<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>ConnectionBar</name>
    <message>
        <source>Link</source>
        <translation>链路</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>帧</translation>
    </message>
    <message>
        <source>%1, character %2: %3</source>
        <translation>%1，第 %2 个字符：%3</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>连接(&amp;C)</translation>
    </message>
    <message>
        <source>Dis&amp;connect</source>
        <translation>断开(&amp;C)</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>connecting ...</source>
        <translation>正在连接……</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>已连接</translation>
    </message>
    <message>
        <source>closing ...</source>
        <translation>正在关闭……</translation>
    </message>
    <message>
        <source>Lin&amp;k:</source>
        <translation>链路(&amp;K)：</translation>
    </message>
    <message>
        <source>link as text</source>
        <translation>文本形式的链路</translation>
    </message>
    <message>
        <source>As tarnwickctl takes it after --link.</source>
        <translation>与 tarnwickctl 的 --link 之后的写法相同。</translation>
    </message>
    <message>
        <source>C&amp;hoose...</source>
        <translation>选择(&amp;H)...</translation>
    </message>
    <message>
        <source>F&amp;rame:</source>
        <translation>帧(&amp;R)：</translation>
    </message>
    <message>
        <source>frame as text</source>
        <translation>文本形式的帧</translation>
    </message>
    <message>
        <source>As tarnwickctl takes it after --frame.</source>
        <translation>与 tarnwickctl 的 --frame 之后的写法相同。</translation>
    </message>
    <message>
        <source>E&amp;dit...</source>
        <translation>编辑(&amp;D)...</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>复制(&amp;Y)</translation>
    </message>
    <message>
        <source>Copies link and frame as options of tarnwickctl.</source>
        <translation>把链路和帧复制为 tarnwickctl 的选项。</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> 毫秒</translation>
    </message>
    <message>
        <source>How long to wait for an answer, and for a connection.</source>
        <translation>等待应答和建立连接的最长时间。</translation>
    </message>
    <message>
        <source>&amp;Log</source>
        <translation>日志(&amp;L)</translation>
    </message>
    <message>
        <source>Log every exchange and what the tools do.</source>
        <translation>记录每次收发以及各工具的动作。</translation>
    </message>
    <message>
        <source>Ti&amp;me-out:</source>
        <translation>超时(&amp;M)：</translation>
    </message>
</context>
<context>
    <name>DeviceBox</name>
    <message>
        <source>The module</source>
        <translation>模块</translation>
    </message>
    <message>
        <source>Software:</source>
        <translation>软件：</translation>
    </message>
    <message>
        <source>Hardware:</source>
        <translation>硬件：</translation>
    </message>
    <message>
        <source>Mode:</source>
        <translation>模式：</translation>
    </message>
    <message>
        <source>Page:</source>
        <translation>页：</translation>
    </message>
    <message>
        <source>MTU:</source>
        <translation>MTU：</translation>
    </message>
    <message>
        <source>not reported</source>
        <translation>未报告</translation>
    </message>
    <message>
        <source>boot code</source>
        <translation>引导程序</translation>
    </message>
    <message>
        <source>application</source>
        <translation>应用程序</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 字节</translation>
    </message>
</context>
<context>
    <name>FirmwareFile</name>
    <message>
        <source>Choose a firmware file first.</source>
        <translation>请先选择固件文件。</translation>
    </message>
    <message>
        <source>There is no file %1: check its name.</source>
        <translation>没有文件 %1：请检查文件名。</translation>
    </message>
    <message>
        <source>%1 is no file: choose a firmware file.</source>
        <translation>%1 不是文件：请选择固件文件。</translation>
    </message>
    <message>
        <source>The file %1 can&apos;t be read: check its rights.</source>
        <translation>文件 %1 无法读取：请检查权限。</translation>
    </message>
    <message>
        <source>The file %1 is empty: look how it was made.</source>
        <translation>文件 %1 是空的：请检查它是如何生成的。</translation>
    </message>
    <message>
        <source>The file %1 is too large: %2 bytes, and no module takes more than %3.</source>
        <translation>文件 %1 太大：有 %2 字节，而模块最多接受 %3 字节。</translation>
    </message>
</context>
<context>
    <name>FirmwarePage</name>
    <message>
        <source>Firmware file</source>
        <translation>固件文件</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 字节</translation>
    </message>
    <message>
        <source>There is no link to a module: connect first, or add a link.</source>
        <translation>没有通往模块的链路：请先连接，或添加链路。</translation>
    </message>
    <message>
        <source>Stopping after the exchange under way ...</source>
        <translation>当前收发完成后停止……</translation>
    </message>
    <message>
        <source>Save results</source>
        <translation>保存结果</translation>
    </message>
    <message>
        <source>Tables (*.csv)</source>
        <translation>表格 (*.csv)</translation>
    </message>
    <message>
        <source>The results are in %1.</source>
        <translation>结果已保存到 %1。</translation>
    </message>
    <message>
        <source>The file %1 can&apos;t be written (%2): choose another place.</source>
        <translation>文件 %1 无法写入（%2）：请换个位置。</translation>
    </message>
    <message>
        <source>%1 of %2 modules hold the file; the table says what became of each.</source>
        <translation>%2 个模块中有 %1 个已写入该文件；表中列出了每个模块的结果。</translation>
    </message>
    <message>
        <source>Drop a file here, or choose one</source>
        <translation>将文件拖到这里，或选择一个</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>浏览(&amp;B)...</translation>
    </message>
    <message>
        <source>&amp;Add link...</source>
        <translation>添加链路(&amp;A)...</translation>
    </message>
    <message>
        <source>Remo&amp;ve</source>
        <translation>移除(&amp;V)</translation>
    </message>
    <message>
        <source>Save r&amp;esults...</source>
        <translation>保存结果(&amp;E)...</translation>
    </message>
    <message>
        <source>&amp;Start</source>
        <translation>开始(&amp;S)</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>停止(&amp;T)</translation>
    </message>
    <message>
        <source>modules and their results</source>
        <translation>模块及其结果</translation>
    </message>
    <message>
        <source>progress of the module chosen</source>
        <translation>所选模块的进度</translation>
    </message>
    <message>
        <source>U&amp;pgrade file:</source>
        <translation>升级文件(&amp;P)：</translation>
    </message>
</context>
<context>
    <name>FrameBoxes</name>
    <message>
        <source>example of a frame</source>
        <translation>帧的示例</translation>
    </message>
    <message>
        <source>A payload of three bytes as it goes out, the first byte on the left.</source>
        <translation>三字节负载发送时的样子，最左边是第一个字节。</translation>
    </message>
    <message>
        <source>payload</source>
        <translation>负载</translation>
    </message>
</context>
<context>
    <name>FramerDialog</name>
    <message>
        <source>payload, CRC</source>
        <translation>负载、CRC</translation>
    </message>
    <message>
        <source>address, payload, CRC</source>
        <translation>地址、负载、CRC</translation>
    </message>
    <message>
        <source>1 to 16 bytes before the payload</source>
        <translation>负载前的 1 到 16 字节</translation>
    </message>
    <message>
        <source>to a cnet device of that address</source>
        <translation>发往该地址的 cnet 设备</translation>
    </message>
    <message>
        <source>markers around the payload</source>
        <translation>负载前后的标记</translation>
    </message>
    <message>
        <source>send commands of a Dorv module</source>
        <translation>Dorv 模块的发送命令</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>帧</translation>
    </message>
    <message>
        <source>&amp;Framers, the one nearest to the link first (F2 changes one):</source>
        <translation>成帧器，最靠近链路的在最前（F2 修改）(&amp;F)：</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>添加(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>移除(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Up</source>
        <translation>上移(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Down</source>
        <translation>下移(&amp;D)</translation>
    </message>
</context>
<context>
    <name>LinkChoice</name>
    <message>
        <source>There is no serial port: plug an adapter in.</source>
        <translation>没有串口：请插入适配器。</translation>
    </message>
    <message>
        <source>No link does that protocol: choose TCP Client, UDP or UDP Broadcast.</source>
        <translation>链路不支持该协议：请选择 TCP Client、UDP 或 UDP Broadcast。</translation>
    </message>
    <message>
        <source>The address is missing: type one.</source>
        <translation>缺少地址：请输入。</translation>
    </message>
    <message>
        <source>Only serial and TCP/IP links can be used: choose one.</source>
        <translation>只能使用串口和 TCP/IP 链路：请选择其一。</translation>
    </message>
</context>
<context>
    <name>LinkWords</name>
    <message>
        <source>There is no port %1: plug the adapter in, or choose another port.</source>
        <translation>没有端口 %1：请插入适配器，或选择其他端口。</translation>
    </message>
    <message>
        <source>%1 is no serial port: choose another one.</source>
        <translation>%1 不是串口：请选择其他端口。</translation>
    </message>
    <message>
        <source>You have no rights to the port %1: have yourself added to its group, mostly dialout, and log in again.</source>
        <translation>没有端口 %1 的权限：请把自己加入它所属的组（通常是 dialout），然后重新登录。</translation>
    </message>
    <message>
        <source>The port %1 is in use: end the other program, or choose another port.</source>
        <translation>端口 %1 正被占用：请结束占用它的程序，或选择其他端口。</translation>
    </message>
    <message>
        <source>The port %1 is in use by %2: end that, or choose another port.</source>
        <translation>端口 %1 正被 %2 占用：请结束它，或选择其他端口。</translation>
    </message>
    <message>
        <source>The port %1 doesn&apos;t take this rate or format: choose another one.</source>
        <translation>端口 %1 不支持该速率或格式：请另选。</translation>
    </message>
    <message>
        <source>The port %1 can&apos;t be opened (%2): plug the adapter in again.</source>
        <translation>端口 %1 无法打开（%2）：请重新插入适配器。</translation>
    </message>
    <message>
        <source>There is no connection to %1: check address, port and firewall, and that the device is on.</source>
        <translation>无法连接 %1：请检查地址、端口和防火墙，以及设备是否已开机。</translation>
    </message>
    <message>
        <source>The system starts no thread for the link: end other programs.</source>
        <translation>系统无法为链路启动线程：请结束其他程序。</translation>
    </message>
    <message>
        <source>The port %1 has gone: plug the adapter in again and connect anew.</source>
        <translation>端口 %1 已消失：请重新插入适配器并重新连接。</translation>
    </message>
    <message>
        <source>The connection to %1 is lost: check the cable or the network and connect anew.</source>
        <translation>与 %1 的连接已断开：请检查线缆或网络并重新连接。</translation>
    </message>
    <message>
        <source>What came from %1 is no answer: check rate, format and frame.</source>
        <translation>从 %1 收到的不是应答：请检查速率、格式和帧。</translation>
    </message>
    <message>
        <source>Nothing came from %1 in time: is the device on?</source>
        <translation>%1 未及时应答：设备开机了吗？</translation>
    </message>
    <message>
        <source>%1 fits several ports (%2): give more of the name.</source>
        <translation>%1 与多个端口相符（%2）：请把名称写得更完整。</translation>
    </message>
</context>
<context>
    <name>LogDock</name>
    <message>
        <source>Log</source>
        <translation>日志</translation>
    </message>
    <message>
        <source>show only lines with this text</source>
        <translation>只显示含有该文本的行</translation>
    </message>
    <message>
        <source>Fi&amp;nd:</source>
        <translation>查找(&amp;N)：</translation>
    </message>
    <message>
        <source>find this text in the log</source>
        <translation>在日志中查找该文本</translation>
    </message>
    <message>
        <source>Clear l&amp;og</source>
        <translation>清空日志(&amp;O)</translation>
    </message>
    <message>
        <source>log lines</source>
        <translation>日志行</translation>
    </message>
    <message>
        <source>Filter:</source>
        <translation>过滤：</translation>
    </message>
</context>
<context>
    <name>LogFeed</name>
    <message>
        <source>lines lost: %1</source>
        <translation>丢失行数：%1</translation>
    </message>
</context>
<context>
    <name>ModuleList</name>
    <message>
        <source>the connection above</source>
        <translation>上方的连接</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>链路</translation>
    </message>
    <message>
        <source>Module</source>
        <translation>模块</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>结果</translation>
    </message>
</context>
<context>
    <name>PageMapView</name>
    <message>
        <source>Page %1, bytes %2 to %3: %4. %5</source>
        <translation>第 %1 页，第 %2 到 %3 字节：%4。%5</translation>
    </message>
    <message>
        <source>The pages show here once the module has said how large they are.</source>
        <translation>模块报告页大小之后，这里显示各页。</translation>
    </message>
    <message>
        <source>map of the pages</source>
        <translation>页面图</translation>
    </message>
</context>
<context>
    <name>PageWords</name>
    <message>
        <source>unknown</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>The module hasn&apos;t been asked about this page yet.</source>
        <translation>尚未向模块查询此页。</translation>
    </message>
    <message>
        <source>equal</source>
        <translation>相同</translation>
    </message>
    <message>
        <source>The module held this page already; it isn&apos;t sent.</source>
        <translation>模块中已有此页，不再发送。</translation>
    </message>
    <message>
        <source>differs</source>
        <translation>不同</translation>
    </message>
    <message>
        <source>The module holds something else here.</source>
        <translation>模块中此页的内容不同。</translation>
    </message>
    <message>
        <source>being sent</source>
        <translation>正在发送</translation>
    </message>
    <message>
        <source>Packets of this page are on their way.</source>
        <translation>此页的数据包正在发送。</translation>
    </message>
    <message>
        <source>sent</source>
        <translation>已发送</translation>
    </message>
    <message>
        <source>The module has accepted every packet of this page.</source>
        <translation>模块已接受此页的所有数据包。</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>失败</translation>
    </message>
    <message>
        <source>All attempts for this page were used up.</source>
        <translation>此页的尝试次数已用完。</translation>
    </message>
</context>
<context>
    <name>RunSettingsBox</name>
    <message>
        <source>Settings of the run</source>
        <translation>升级设置</translation>
    </message>
    <message>
        <source>Packet len&amp;gth:</source>
        <translation>包长度(&amp;G)：</translation>
    </message>
    <message>
        <source>Attempts:</source>
        <translation>尝试次数：</translation>
    </message>
    <message>
        <source>Send interval:</source>
        <translation>发送间隔：</translation>
    </message>
    <message>
        <source>Reset wait:</source>
        <translation>复位等待：</translation>
    </message>
    <message>
        <source>Verify wait:</source>
        <translation>校验等待：</translation>
    </message>
    <message>
        <source>Most bytes of the file in one packet; the module may take fewer.</source>
        <translation>一个包中文件数据的最大字节数；模块可能接受得更少。</translation>
    </message>
    <message>
        <source>How often a packet or a question is sent before giving up.</source>
        <translation>放弃之前，一个包或一次查询最多发送的次数。</translation>
    </message>
    <message>
        <source>Pause after each packet, for slow modules.</source>
        <translation>每个包之后的停顿，用于较慢的模块。</translation>
    </message>
    <message>
        <source>How long the module takes to start its boot code.</source>
        <translation>模块启动引导程序所需的时间。</translation>
    </message>
    <message>
        <source>How long the module takes to verify the whole file.</source>
        <translation>模块校验整个文件所需的时间。</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> 毫秒</translation>
    </message>
</context>
<context>
    <name>StackText</name>
    <message>
        <source>nothing here</source>
        <translation>此处为空</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is unknown</source>
        <translation>“%1”无法识别</translation>
    </message>
    <message>
        <source>%1: %2 is one of %3</source>
        <translation>%1：%2应为 %3 之一</translation>
    </message>
    <message>
        <source>%1 is a number from %2 to %3</source>
        <translation>%1应为 %2 到 %3 的数</translation>
    </message>
    <message>
        <source>a count of data bits</source>
        <translation>数据位数</translation>
    </message>
    <message>
        <source>the parity</source>
        <translation>校验</translation>
    </message>
    <message>
        <source>the number of stop bits</source>
        <translation>停止位数</translation>
    </message>
    <message>
        <source>the name of a port is missing, such as /dev/ttyUSB0</source>
        <translation>缺少端口名，例如 /dev/ttyUSB0</translation>
    </message>
    <message>
        <source>the rate in bits per second</source>
        <translation>波特率</translation>
    </message>
    <message>
        <source>the flow control</source>
        <translation>流控</translation>
    </message>
    <message>
        <source>nothing is expected after the flow control</source>
        <translation>流控之后不应再有内容</translation>
    </message>
    <message>
        <source>a port</source>
        <translation>端口号</translation>
    </message>
    <message>
        <source>the closing bracket of the IPv6 address is missing</source>
        <translation>IPv6 地址缺少右方括号</translation>
    </message>
    <message>
        <source>the port is missing, as in %1</source>
        <translation>缺少端口号，应如 %1</translation>
    </message>
    <message>
        <source>a colon and the port follow the bracket</source>
        <translation>方括号之后应为冒号和端口号</translation>
    </message>
    <message>
        <source>an IPv6 address is written in brackets, as in [::1]:4001</source>
        <translation>IPv6 地址写在方括号中，如 [::1]:4001</translation>
    </message>
    <message>
        <source>the host is missing</source>
        <translation>缺少主机</translation>
    </message>
    <message>
        <source>a host has at most %1 characters</source>
        <translation>主机名最多 %1 个字符</translation>
    </message>
    <message>
        <source>raw sockets take an IPv4 address such as 10.0.0.5; names work with tcp: and udp:</source>
        <translation>原始套接字只接受如 10.0.0.5 的 IPv4 地址；主机名请用 tcp: 和 udp:</translation>
    </message>
    <message>
        <source>the kind of link is missing: write serial:%1</source>
        <translation>缺少链路类型：请写 serial:%1</translation>
    </message>
    <message>
        <source>the kind of link</source>
        <translation>链路类型</translation>
    </message>
    <message>
        <source>a colon and the port are missing, as in serial:/dev/ttyUSB0</source>
        <translation>缺少冒号和端口，应如 serial:/dev/ttyUSB0</translation>
    </message>
    <message>
        <source>a colon and the address are missing, as in tcp:10.0.0.5:4001</source>
        <translation>缺少冒号和地址，应如 tcp:10.0.0.5:4001</translation>
    </message>
    <message>
        <source>a framer</source>
        <translation>成帧器</translation>
    </message>
    <message>
        <source>more is needed, as in %1</source>
        <translation>还需要更多内容，如 %1</translation>
    </message>
    <message>
        <source>the address</source>
        <translation>地址</translation>
    </message>
    <message>
        <source>a prefix has 1 to 16 bytes, as in chan:05 or chan:1234</source>
        <translation>前缀为 1 到 16 字节，如 chan:05 或 chan:1234</translation>
    </message>
    <message>
        <source>a target has 4 hexadecimal digits, as in cnet:1234</source>
        <translation>目标为 4 位十六进制数，如 cnet:1234</translation>
    </message>
    <message>
        <source>the mode</source>
        <translation>模式</translation>
    </message>
    <message>
        <source>nothing is expected after %1</source>
        <translation>%1 之后不应再有内容</translation>
    </message>
    <message>
        <source>dorv works only directly on the link: write it first</source>
        <translation>dorv 只能直接用在链路上：请写在最前</translation>
    </message>
    <message>
        <source>dorv waits for lines, which tcp: and udp: links don&apos;t; use rawtcp: or rawudp:</source>
        <translation>dorv 需要按行等待，tcp: 和 udp: 链路不支持；请用 rawtcp: 或 rawudp:</translation>
    </message>
    <message>
        <source>a byte has two hexadecimal digits</source>
        <translation>一个字节为两位十六进制数</translation>
    </message>
    <message>
        <source>not a hexadecimal digit</source>
        <translation>不是十六进制数字</translation>
    </message>
</context>
<context>
    <name>Transfer</name>
    <message>
        <source>%1 of %2 bytes</source>
        <translation>%1 / %2 字节</translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation>剩余 %1</translation>
    </message>
</context>
<context>
    <name>UpgradeModule</name>
    <message>
        <source>ready</source>
        <translation>就绪</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>opening the link</source>
        <translation>正在打开链路</translation>
    </message>
    <message>
        <source>asking the module</source>
        <translation>正在查询模块</translation>
    </message>
    <message>
        <source>starting the boot code</source>
        <translation>正在启动引导程序</translation>
    </message>
    <message>
        <source>sending</source>
        <translation>正在发送</translation>
    </message>
    <message>
        <source>verifying</source>
        <translation>正在校验</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完成</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>失败</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>已停止</translation>
    </message>
</context>
<context>
    <name>UpgradeVerdict</name>
    <message>
        <source>Start again: pages that have arrived aren&apos;t sent a second time.</source>
        <translation>请重新开始：已到达的页不会再次发送。</translation>
    </message>
    <message>
        <source>no attempt was made</source>
        <translation>没有进行尝试</translation>
    </message>
    <message>
        <source>no reply came in time</source>
        <translation>未及时收到应答</translation>
    </message>
    <message>
        <source>a reply was none to what was asked</source>
        <translation>应答与请求不符</translation>
    </message>
    <message>
        <source>it reports a page size or an MTU of 0</source>
        <translation>它报告的页大小或 MTU 为 0</translation>
    </message>
    <message>
        <source>a packet has at least 4 bytes</source>
        <translation>一个包至少 4 字节</translation>
    </message>
    <message>
        <source>the module refused a packet</source>
        <translation>模块拒绝了一个包</translation>
    </message>
    <message>
        <source>what it holds differs from the file</source>
        <translation>模块中的内容与文件不同</translation>
    </message>
    <message>
        <source>it can&apos;t be opened</source>
        <translation>无法打开</translation>
    </message>
    <message>
        <source>it is larger than 2 GiB</source>
        <translation>大于 2 GiB</translation>
    </message>
    <message>
        <source>there isn&apos;t enough memory for it</source>
        <translation>内存不足</translation>
    </message>
    <message>
        <source>it can&apos;t be read to its end</source>
        <translation>无法完整读取</translation>
    </message>
    <message>
        <source>%1: the module holds all %2 bytes and says so, after %3 s.</source>
        <translation>%1：模块已确认写入全部 %2 字节，用时 %3 秒。</translation>
    </message>
    <message>
        <source>It has been restarted.</source>
        <translation>模块已重启。</translation>
    </message>
    <message>
        <source>The module refused all %1 attempts to send the packet at offset %2.</source>
        <translation>模块拒绝了偏移 %2 处数据包的全部 %1 次发送。</translation>
    </message>
    <message>
        <source>Maybe the file (%1 bytes) is larger than the module&apos;s memory; if it isn&apos;t, try a packet length of 256.</source>
        <translation>文件（%1 字节）可能大于模块的存储器；如果不是，请试用包长度 256。</translation>
    </message>
    <message>
        <source>The transfer failed: %1.</source>
        <translation>传输失败：%1。</translation>
    </message>
    <message>
        <source>On a bad line, a packet length of 256 helps.</source>
        <translation>线路不好时，可用包长度 256。</translation>
    </message>
    <message>
        <source>The upgrade was stopped.</source>
        <translation>升级已停止。</translation>
    </message>
    <message>
        <source>The module may wait in its boot code.</source>
        <translation>模块可能停留在引导程序中。</translation>
    </message>
    <message>
        <source>The file %1: %2.</source>
        <translation>文件 %1：%2。</translation>
    </message>
    <message>
        <source>Choose it anew, or another one.</source>
        <translation>请重新选择该文件，或另选一个。</translation>
    </message>
    <message>
        <source>Wrong firmware: %1 is not for the module %2.</source>
        <translation>固件不符：%1 不适用于模块 %2。</translation>
    </message>
    <message>
        <source>Choose the file whose name begins with the module&apos;s name and an underscore.</source>
        <translation>请选择文件名以模块名和下划线开头的文件。</translation>
    </message>
    <message>
        <source>The module doesn&apos;t say what it is: %1.</source>
        <translation>模块未报告其信息：%1。</translation>
    </message>
    <message>
        <source>Check that it is on, and the rate, the format and the frame.</source>
        <translation>请检查它是否开机，以及速率、格式和帧。</translation>
    </message>
    <message>
        <source>The module didn&apos;t start its boot code.</source>
        <translation>模块未启动引导程序。</translation>
    </message>
    <message>
        <source>It may take longer: start again with a reset wait of 5000 ms.</source>
        <translation>可能需要更长时间：请把复位等待设为 5000 毫秒后重新开始。</translation>
    </message>
    <message>
        <source>The module doesn&apos;t say that it holds the file: %1.</source>
        <translation>模块未确认已写入该文件：%1。</translation>
    </message>
    <message>
        <source>It stays in its boot code.</source>
        <translation>它停留在引导程序中。</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1%2</translation>
    </message>
</context>
<context>
    <name>WorkbenchWindow</name>
    <message>
        <source>Upgrade under way</source>
        <translation>正在升级</translation>
    </message>
    <message>
        <source>An upgrade is under way. Stop it and close?
The module stays in its boot code; another run completes what this one began.</source>
        <translation>正在升级。要停止并关闭吗？
模块会停留在引导程序中；再次升级会继续完成。</translation>
    </message>
    <message>
        <source>Tarnwick Workbench</source>
        <translation>Tarnwick 工作台</translation>
    </message>
    <message>
        <source>F&amp;irmware</source>
        <translation>固件(&amp;I)</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Find in the log</source>
        <translation>在日志中查找(&amp;F)</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>查找下一个(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>语言(&amp;L)</translation>
    </message>
    <message>
        <source>As the &amp;desktop</source>
        <translation>跟随桌面(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Colours</source>
        <translation>颜色(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>浅色(&amp;L)</translation>
    </message>
    <message>
        <source>D&amp;ark</source>
        <translation>深色(&amp;A)</translation>
    </message>
    <message>
        <source>Vie&amp;w</source>
        <translation>视图(&amp;W)</translation>
    </message>
    <message>
        <source>Fil&amp;ter the log</source>
        <translation>过滤日志(&amp;T)</translation>
    </message>
</context>
</TS>
