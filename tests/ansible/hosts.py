"""Hosts for tests of the collection: each is an sshd with processes, /opt, /root, /tmp and /var/lib of its
own.

They listen on loopback addresses, know one key and share one distribution in /srv/distribution and
the commands in /usr/local/bin, which cover what lies there. Nothing outlives whoever made them.
"""

import json
import os
import pathlib
import shutil
import socket
import subprocess
import time

import needs

SSHD = "/usr/sbin/sshd"
DEADLINE = 60.0
COMMANDS = ("sshd", "ansible-playbook", "ansible-galaxy", "ssh", "ssh-keygen", "unshare", "setpriv", "make")

SETTINGS = """\
HostKey /run/host_key
AuthorizedKeysFile /run/user_key.pub
PidFile none
StrictModes no
UsePAM no
PrintLastLog no
MaxStartups 1000
Subsystem sftp internal-sftp
"""
# What a host has to itself, and what all of them share; else it sees what is here. /tmp comes last: the
# others lie there.
START = """\
mount --bind "$1/opt" /opt
mount --bind "$1/root" /root
mount --bind "$1/lib" /var/lib
mount --bind "$2/run" /run
mount --bind "$2/srv" /srv
mount --bind "$2/bin" /usr/local/bin
mount --bind "$1/tmp" /tmp
exec {sshd} -D -e -f /run/sshd_config -o ListenAddress="$3"
"""
EVERY_HOST = """\
Host *
Port {port}
User root
IdentityFile {root}/run/user_key
StrictHostKeyChecking no
UserKnownHostsFile /dev/null
LogLevel ERROR
ControlMaster auto
ControlPersist 30
"""
ANSIBLE = """\
[defaults]
inventory = {root}/inventory
forks = {forks}
collections_path = {root}/collections
interpreter_python = /usr/bin/python3
nocows = True
nocolor = True
retry_files_enabled = False
[ssh_connection]
ssh_args = -F {root}/ssh_config -o ControlPersist=30
control_path_dir = {root}/control
"""


def missing():
    """Returns why there can be no such hosts here, or None."""
    if os.geteuid() != 0:
        return "only the superuser makes hosts"
    why = needs.missing(*COMMANDS)
    if why is None and subprocess.run(["unshare", "--mount", "--pid", "--fork", "true"], capture_output=True,
                                      check=False).returncode != 0:
        return "namespaces are not allowed"
    return why


class Hosts:
    """Hosts that run until the end of the context; ssh knows them by their names, Ansible by an inventory."""

    def __init__(self, root, names, forks=5):
        self.root = root
        self.names = names
        self.running = {}
        with socket.create_server((self.address(names[0]), 0)) as found:
            self.port = found.getsockname()[1]
        for name in ("run/sshd", "srv", "bin", "control", "home"):
            (root / name).mkdir(parents=True)
        for key in ("host_key", "user_key"):
            subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", root / "run" / key], check=True)
        (root / "run/sshd_config").write_text(SETTINGS)
        (root / "ssh_config").write_text(
            "".join(f"Host {name}\nHostName {self.address(name)}\n" for name in names)
            + EVERY_HOST.format(root=root, port=self.port))
        (root / "ansible.cfg").write_text(ANSIBLE.format(root=root, forks=forks))
        (root / "inventory").write_text("\n".join(names) + "\n")
        self.environment = {"PATH": needs.PATH, "LC_ALL": "C.UTF-8", "HOME": str(root / "home"),
                            "ANSIBLE_CONFIG": str(root / "ansible.cfg")}

    def __enter__(self):
        for name in self.names:
            self.start(name)
        return self

    def __exit__(self, *_):
        for name in list(self.running):
            self.stop(name)

    def address(self, name):
        number = self.names.index(name) + 1
        return f"127.0.1.{number}"

    def disk(self, name):
        """Returns the directory in which a host has its /opt, /root and /tmp, and /var/lib as lib."""
        return self.root / "hosts" / name

    def start(self, name):
        """Starts a host, with what it had on its disk."""
        for directory in ("opt", "root", "tmp", "lib"):
            (self.disk(name) / directory).mkdir(parents=True, exist_ok=True)
        with open(self.disk(name) / "log", "ab") as log:
            self.running[name] = subprocess.Popen(
                ["setpriv", "--pdeathsig", "KILL", "unshare", "--mount", "--pid", "--fork", "--kill-child",
                 "--mount-proc", "sh", "-euc", START.format(sshd=SSHD), "sh", self.disk(name),
                 self.root, f"{self.address(name)}:{self.port}"], stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.wait_for(name)

    def wait_for(self, name):
        deadline = time.monotonic() + DEADLINE
        while True:
            try:
                socket.create_connection((self.address(name), self.port), timeout=1).close()
                return
            except OSError:
                if self.running[name].poll() is not None or time.monotonic() > deadline:
                    raise RuntimeError(f"{name}: " + (self.disk(name) / "log").read_text()) from None
                time.sleep(0.02)

    def stop(self, name):
        """Ends a host as a power failure does."""
        host = self.running.pop(name)
        host.kill()
        host.wait()

    def cpu_seconds(self):
        """Returns what the processes of all hosts, and those that they waited for, have used."""
        own = {os.readlink(f"/proc/{host.pid}/ns/pid_for_children") for host in self.running.values()}
        ticks = 0
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if os.readlink(process / "ns/pid") in own:
                    times = (process / "stat").read_text().rpartition(")")[2].split()[11:15]
                    ticks += sum(int(time) for time in times)
            except OSError:  # it has ended
                pass
        return ticks / os.sysconf("SC_CLK_TCK")

    def install_collection(self, project):
        """Gives Ansible the collection as its users get it."""
        made = subprocess.run([project / "scripts/collection", self.root], check=True, stdout=subprocess.PIPE,
                              text=True, env=self.environment).stdout
        subprocess.run(["ansible-galaxy", "collection", "install", "-p", self.root / "collections",
                        made.rstrip("\n")], check=True, stdout=subprocess.DEVNULL, env=self.environment)

    def play(self, playbook, *options, during=lambda: None):
        """Plays a playbook, and does something meanwhile.

        Returns the status of Ansible, what each host said to its last task, and what Ansible printed.
        """
        (self.root / "playbook.yml").write_text(json.dumps(playbook))
        said = self.root / "said"
        shutil.rmtree(said, ignore_errors=True)
        environment = {**self.environment, "ANSIBLE_CALLBACKS_ENABLED": "tree",
                       "ANSIBLE_CALLBACK_TREE_DIR": str(said)}
        with subprocess.Popen(["ansible-playbook", self.root / "playbook.yml", *options], text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=environment,
                              cwd=self.root) as running:
            during()
            output, _ = running.communicate()
        results = {path.name: json.loads(path.read_text()) for path in said.iterdir()} if said.exists() else {}
        return running.returncode, results, output
