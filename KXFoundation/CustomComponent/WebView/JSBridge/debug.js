;(function(){ // SPDX-License-Identifier: MIT
    // Shows what a page's script throws and nobody catches.
    window.addEventListener('error', function (event) {
        var error = event.error === undefined || event.error === null ? event.message : event.error;
        var isError = error instanceof Error || Object.prototype.toString.call(error) === '[object Error]';
        if (isError) {
            alert('name: ' + error.name + '\nmessage: ' + error.message + '\nstack: ' + JSON.stringify(error.stack));
        } else {
            alert(JSON.stringify(error));
        }
    });
})();
