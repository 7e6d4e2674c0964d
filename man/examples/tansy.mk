tansy: tansy-message tansy-new tansy-dat-file \
		tansy-program  \
		tansy-succeeded

tansy-new:	tansy-tar tansy-owner \
		tansy-group \
		tansy-inst-files tansy-make

tansy-tar: tansy.tar
	echo "** extracting $(TAR_PATH)/tansy.tar to /opt/tansy"
	cd /opt/tansy; tar -xvpf $(TAR_PATH)/tansy.tar
	cd /opt/tansy; rm -f $(TAR_PATH)/tansy.tar-contence

tansy-dat-file: tansy-inst-dir
	diff ./tansy.dat /opt/tansy/install/tansy.dat > /dev/null 2>&1 || \
	(cp -p ./tansy.dat /opt/tansy/install && \
	chown lena /opt/tansy/install/tansy.dat && \
	chgrp readers /opt/tansy/install/tansy.dat  )

tansy-owner: tansy.tar-contence
	echo "** changing owner to 'lena' inside the tree '/opt/tansy'"
	cd /opt/tansy; chown lena `cat $(TAR_PATH)/tansy.tar-contence`

tansy-program: /opt/tansy/install/tansy.make
	echo "** making 'program' for 'Tansy'"
	cd /opt/tansy/install; $(MAKE) -f tansy.make program
