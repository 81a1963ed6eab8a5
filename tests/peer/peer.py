#!/usr/bin/env python3
"""peer.py ZRBENCH [CONFIGURATIONS [SEED]]: plays the same random VLAN, PVID, trunk-port and isolation
configurations, and the same frames, into the virtual chip and into Open vSwitch's dummy datapath, and compares
where each frame comes out and with which tag.

Known differences, which are therefore left out or translated:
- Open vSwitch floods to the bridge's own port as well: that port is not looked at.
- It never forwards frames to 01:80:c2:00:00:0x, which the chip traps or switches as configured: none are sent.
- A port without a VLAN for untagged frames is a port whose PVID is a VLAN that it is no member of."""
import json, os, random, re, shutil, subprocess, sys, tempfile

PORTS = range(5)
VLANS = (10, 20, 30)
FRAMES = 20


class OpenVSwitch:
    """A switch of its own in a private folder: no kernel module, no privileges."""

    def __init__(self):
        self.dir = tempfile.mkdtemp(prefix='peer')
        self.env = dict(os.environ, OVS_RUNDIR=self.dir, OVS_LOGDIR=self.dir, OVS_DBDIR=self.dir)
        db, sock = f'{self.dir}/conf.db', f'unix:{self.dir}/db.sock'
        self.vsctl = ['ovs-vsctl', f'--db={sock}', '--no-wait']
        daemon = ['--detach', '--no-chdir', f'--log-file={self.dir}/log', '-vconsole:off']
        self.run('ovsdb-tool', 'create', db, '/usr/share/openvswitch/vswitch.ovsschema')
        self.run('ovsdb-server', db, f'--remote=p{sock}', f'--pidfile={self.dir}/db.pid', *daemon)
        self.run(*self.vsctl, 'init')
        self.run('ovs-vswitchd', sock, '--enable-dummy', '--disable-system', f'--unixctl={self.dir}/ctl',
                 f'--pidfile={self.dir}/vs.pid', *daemon)
        self.vsctl.remove('--no-wait')  # from here on a change is in force when the command returns
        add = ['add-br', 'br0', '--', 'set', 'bridge', 'br0', 'datapath_type=dummy', 'fail-mode=standalone']
        for port in PORTS:
            add += ['--', 'add-port', 'br0', f'p{port}', '--', 'set', 'interface', f'p{port}', 'type=dummy',
                    f'ofport_request={port + 1}']
        self.run(*self.vsctl, *add)
        shown = self.ctl('dpif/show')
        self.port_of = {number: int(port) for port, number in re.findall(r'p(\d) \d+/(\d+):', shown)}

    def run(self, *command):
        return subprocess.run(command, env=self.env, check=True, capture_output=True, text=True).stdout

    def ctl(self, *command):
        return self.run('ovs-appctl', '-t', f'{self.dir}/ctl', *command)

    def configure(self, ports, isolated):
        words = []
        for port, (pvid, members, mode) in enumerate(ports):
            words += ['--', 'clear', 'port', f'p{port}', 'tag', 'trunks', '--', 'set', 'port', f'p{port}',
                      f'vlan_mode={mode}', f'trunks={",".join(map(str, members))}',
                      f'protected={"true" if port in isolated else "false"}']
            words += [f'tag={pvid}'] if pvid else []
        self.run(*self.vsctl, *words[1:])
        self.ctl('fdb/flush', 'br0')

    def send(self, port, frame):
        """Where it comes out: {port: None or (VID, priority)}."""
        traced = self.ctl('ofproto/trace', 'br0', f'in_port={port + 1}', frame.hex())
        actions = re.search(r'Datapath actions: (.*)', traced).group(1)
        tag = tag_of(frame)
        out = {}
        for action in re.findall(r'push_vlan\([^)]*\)|[a-z_]+|\d+', actions):
            if action.startswith('push_vlan'):
                vid, pcp = re.search(r'vid=(\d+),pcp=(\d+)', action).groups()
                tag = (int(vid), int(pcp))
            elif action == 'pop_vlan':
                tag = None
            elif action in self.port_of:
                out[self.port_of[action]] = tag
            elif action != 'drop' and not action.isdigit():
                sys.exit(f'peer: an action that is not known: {actions}')
        return out

    def stop(self):
        for name in ('vs.pid', 'db.pid'):
            if os.path.exists(f'{self.dir}/{name}'):
                subprocess.run(['kill', open(f'{self.dir}/{name}').read().strip()])
        shutil.rmtree(self.dir, ignore_errors=True)


def tag_of(frame):
    if frame[12:14] != b'\x81\x00':
        return None
    tci = int.from_bytes(frame[14:16], 'big')
    return (tci & 0xFFF, tci >> 13)


def virtual_chip(zrbench, ports, isolated, frames):
    """Where every frame comes out of unit 0, as OpenVSwitch.send tells it."""
    steps = ['chip init 0', 'port init 0', 'mac init 0', 'vlan init 0',
             {'do': 'port enable 0 $p on', 'each': {'p': '0-4'}}, {'do': 'link 0 $p up', 'each': {'p': '0-4'}},
             {'do': 'vlan remove 0 1 $p', 'each': {'p': '0-4'}}]
    steps += [f'vlan create 0 {vlan}' for vlan in VLANS]
    for port, (pvid, members, mode) in enumerate(ports):
        for vlan in members:
            untagged = vlan == pvid and mode == 'native-untagged'
            steps.append(f'vlan add 0 {vlan} {port} {"untagged" if untagged else "tagged"}')
        steps += [f'vlan set-pvid 0 {port} {pvid}'] if pvid else []
    for port in isolated:
        others = ','.join(str(other) for other in isolated if other != port)
        steps += [f'isolate set 0 {port} {others} on'] if others else []
    steps += [f'frame send 0 {port} {frame.hex()}' for port, frame in frames]
    unit = {'unit': 0, 'maxFrameSize': 1536, 'reservedPort': 17, 'cascadeTrunk': 1,
            'portSets': {'valid': '0-4,17'}}
    with tempfile.NamedTemporaryFile('w', suffix='.json') as file:
        json.dump({'units': [unit], 'steps': steps}, file)
        file.flush()
        ran = subprocess.run([zrbench, 'run', file.name], capture_output=True, text=True)
    if ran.returncode != 0:
        sys.exit(f'peer: zrbench did not do as expected:\n{ran.stdout}{ran.stderr}')
    found = []
    for to in re.findall(r'frame send 0 \d \S+ +to=(.*?)(?: dropped=\S+)?$', ran.stdout, re.M):
        exits = re.findall(r'0/(\d+) (?:untagged|vlan (\d+) priority (\d))', to)
        found.append({int(port): (int(vid), int(pcp)) if vid else None for port, vid, pcp in exits})
    return found


def random_ports(rng):
    """For each port its PVID or None, the VLANs that it is a member of, and how its own VLAN leaves."""
    ports = []
    for _ in PORTS:
        members = sorted(rng.sample(VLANS, rng.randint(1, len(VLANS))))
        mode = rng.choice(('native-untagged', 'native-untagged', 'native-tagged', 'trunk'))
        ports.append((None if mode == 'trunk' else rng.choice(members), members, mode))
    return ports


def random_frames(rng):
    hosts = {port: [bytes((2, 0, 0, 0, port, host)) for host in range(2)] for port in PORTS}
    everywhere = [mac for macs in hosts.values() for mac in macs]
    frames = []
    for _ in range(FRAMES):
        port = rng.choice(PORTS)
        source = rng.choice(hosts[port] if rng.random() < 0.9 else everywhere)  # some hosts move
        target = rng.choice(everywhere * 2 + [b'\xff' * 6, bytes.fromhex('01005e000102'), b'\x02' * 6])
        tags = b''
        if rng.random() < 0.6:
            vid = rng.choice(VLANS + (0, 99))
            tags = b'\x81\x00' + (rng.randrange(8) << 13 | vid).to_bytes(2, 'big')
        if rng.random() < 0.1:
            tags += b'\x81\x00\x00\x05'
        frames.append((port, target + source + tags + b'\x88\xb5' + bytes(46)))
    return frames


def main():
    zrbench = sys.argv[1]
    configurations = int(sys.argv[2]) if len(sys.argv) > 2 else 100
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(1 << 32)
    rng = random.Random(seed)
    switch = OpenVSwitch()
    differences = forwarded = 0
    try:
        for number in range(configurations):
            ports = random_ports(rng)
            isolated = rng.sample(PORTS, rng.choice((0, 0, 2, 3)))
            frames = random_frames(rng)
            switch.configure(ports, isolated)
            expected = [switch.send(port, frame) for port, frame in frames]
            found = virtual_chip(zrbench, ports, isolated, frames)
            if len(found) != len(frames):
                sys.exit(f'peer: {len(found)} of {len(frames)} frames were told')
            forwarded += sum(map(bool, expected))
            for (port, frame), there, here in zip(frames, expected, found):
                if there != here:
                    differences += 1
                    print(f'configuration {number} of seed {seed}: {ports}, isolated {isolated}\n  into port {port}: '
                          f'{frame.hex()}\n  Open vSwitch {there}\n  virtual chip {here}')
    finally:
        switch.stop()
    frames = configurations * FRAMES
    print(f'{frames} frames over {configurations} configurations (seed {seed}), {forwarded} forwarded')
    print(f'{differences} came out elsewhere' if differences else 'every one came out alike')
    return differences != 0 or forwarded == 0


if __name__ == '__main__':
    sys.exit(main())
